// 8-bit saves: the right bytes under the name, or the old file and nothing else.
#include "image/LdrSave.h"

#include "tests/image/Pictures.h"
#include "tests/support/FailingCalls.h"
#include "tests/support/FailureRecorder.h"
#include "tests/support/ResourceLimit.h"
#include "tests/support/TempFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <wx/image.h>
#include <wx/log.h>

#include <cerrno>
#include <clocale>
#include <filesystem>

using namespace LS::Tests;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;
namespace fs = std::filesystem;

namespace {

struct FormatCase {
    const char* name;
    LdrFormat format;
    wxBitmapType type;
};

constexpr FormatCase FORMATS[] = {
    {"jpeg", LdrFormat::Jpeg, wxBITMAP_TYPE_JPEG}, {"png", LdrFormat::Png, wxBITMAP_TYPE_PNG},
    {"tiff", LdrFormat::Tiff, wxBITMAP_TYPE_TIFF}, {"bmp", LdrFormat::Bmp, wxBITMAP_TYPE_BMP},
    {"tga", LdrFormat::Targa, wxBITMAP_TYPE_TGA},
};

/// A smooth picture with some detail. Each call gives pixels of its own.
wxImage Picture(int nWidth, int nHeight)
{
    wxImage image(nWidth, nHeight);
    for (int y = 0; y < nHeight; ++y)
        for (int x = 0; x < nWidth; ++x)
            image.SetRGB(x, y, static_cast<unsigned char>(x * 255 / nWidth),
                         static_cast<unsigned char>(y * 255 / nHeight), static_cast<unsigned char>(x * y));
    return image;
}

LdrOutcome Save(wxImage image, const std::string& sPath, LdrFormat format, const LdrOptions& options = {})
{
    testing::internal::CaptureStderr(); // the TIFF writer's own lines, which its test looks at
    const LdrOutcome outcome = SaveLdr(image, sPath, format, options);
    testing::internal::GetCapturedStderr();
    return outcome;
}

const Bytes OLD{'o', 'l', 'd'};

} // namespace

TEST(SaveLdr, SameBytesAsTheImageLibrary)
{
    const TempFolder folder;
    const struct {
        FormatCase format;
        int quality;
    } cases[] = {{FORMATS[0], 1},  {FORMATS[0], 99}, {FORMATS[0], 100},
                 {FORMATS[1], 95}, {FORMATS[3], 95}, {FORMATS[4], 95}};
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.format.name << ", quality " << c.quality);
        wxImage expected = Picture(61, 47);
        if (c.format.format == LdrFormat::Jpeg && c.quality < 100)
            expected.SetOption("quality", c.quality);
        ASSERT_TRUE(expected.SaveFile(wxString(folder.File("expected")), c.format.type));
        const FailureRecorder log;
        LdrOptions options;
        options.nQuality = c.quality;
        ASSERT_EQ(LdrOutcome::Saved, Save(Picture(61, 47), folder.File("a"), c.format.format, options));
        EXPECT_TRUE(ReadBytes(folder.File("expected")) == ReadBytes(folder.File("a")));
        EXPECT_TRUE(log.Lines().empty());
    }
}

TEST(SaveLdr, TiffOptionsReachTheWriter)
{
    const TempFolder folder;
    const wxImage picture = Picture(200, 200);
    LdrOptions options;
    const auto size = [&](unsigned nCompression) {
        options.nCompression = nCompression;
        EXPECT_EQ(LdrOutcome::Saved, Save(picture, folder.File("a"), LdrFormat::Tiff, options));
        return fs::file_size(folder.File("a"));
    };
    EXPECT_GT(size(0), 160000U);
    const wxLogNull noWarnings; // of a fourth sample that the file doesn't explain
    EXPECT_TRUE(SamePixels(picture, wxImage(folder.File("a"), wxBITMAP_TYPE_TIFF)));
    EXPECT_LT(size(1), 120000U);

    const FailureRecorder log;
    WriteElements(folder.File("a"), OLD);
    options.nCompression = 4;
    EXPECT_EQ(LdrOutcome::Failed, Save(picture, folder.File("a"), LdrFormat::Tiff, options));
    EXPECT_EQ(OLD, ReadBytes(folder.File("a")));
    EXPECT_THAT(log.Lines(), ElementsAre(HasSubstr("RowsPerStrip")));
}

TEST(SaveLdr, FullDiskKeepsTheOldFile)
{
    for (const FormatCase& format : FORMATS) {
        const TempFolder folder;
        const std::string sPath = folder.File("a");
        ASSERT_EQ(LdrOutcome::Saved, Save(Picture(4, 4), sPath, format.format));
        const rlim_t nSize = fs::file_size(sPath);
        WriteElements(sPath, OLD);
        for (const rlim_t nLimit : {nSize / 2, nSize - 1}) {
            SCOPED_TRACE(testing::Message() << format.name << ", " << nLimit << " of " << nSize << " bytes");
            const FailureRecorder log;
            const ResourceLimit full(RLIMIT_FSIZE, nLimit);
            EXPECT_EQ(LdrOutcome::Failed, Save(Picture(4, 4), sPath, format.format));
            EXPECT_EQ(OLD, ReadBytes(sPath));
            EXPECT_EQ(std::vector<std::string>{"a"}, folder.Names());
            EXPECT_THAT(log.Lines(), ElementsAre(StartsWith("save: " + sPath + ": ")));
        }
    }
}

TEST(SaveLdr, LateErrorsAndExceptionsKeepTheOldFile)
{
    const struct {
        int error;
        LdrOutcome outcome;
        const char* reason;
    } cases[] = {{ENOSPC, LdrOutcome::Failed, "No space left on device"},
                 {THROWS, LdrOutcome::Exception, "a system call that throws"}};
    for (const FormatCase& format : FORMATS)
        for (const auto& c : cases) {
            SCOPED_TRACE(testing::Message() << format.name << ", " << c.reason);
            const TempFolder folder;
            WriteElements(folder.File("a"), OLD);
            const FailureRecorder log;
            const FailingCall disk(SystemCall::Fsync, c.error);
            EXPECT_EQ(c.outcome, Save(Picture(3, 2), folder.File("a"), format.format));
            EXPECT_EQ(OLD, ReadBytes(folder.File("a")));
            EXPECT_EQ(std::vector<std::string>{"a"}, folder.Names());
            EXPECT_EQ(std::vector{"save: " + folder.File("a") + ": " + c.reason}, log.Lines());
        }
}

TEST(SaveLdr, AnyNameIsFineInAnyLocale)
{
    ASSERT_STREQ("C", std::setlocale(LC_ALL, nullptr));
    for (const FormatCase& format : FORMATS) {
        SCOPED_TRACE(format.name);
        const TempFolder folder;
        EXPECT_EQ(LdrOutcome::Saved, Save(Picture(3, 2), folder.File("\xff%s \xe7\x85\xa7"), format.format));
        const FailureRecorder log;
        EXPECT_EQ(LdrOutcome::Failed, Save(Picture(3, 2), folder.File("missing/a"), format.format));
        EXPECT_EQ(1U, log.Lines().size());
        EXPECT_EQ(1U, folder.Names().size());
    }
}

TEST(SaveLdr, PicturesThatAFormatCannotHold)
{
    const struct {
        const char* name;
        wxImage image;
        LdrFormat format;
        LdrOutcome outcome;
    } cases[] = {
        {"JPEG of 65501 columns", Picture(65501, 1), LdrFormat::Jpeg, LdrOutcome::Failed},
        {"Targa of 65536 columns", Picture(65536, 1), LdrFormat::Targa, LdrOutcome::Failed},
        {"bitmap of 4 GiB", PictureWithoutPixels(65536, 21846), LdrFormat::Bmp, LdrOutcome::Failed},
        {"TIFF of 4 GiB", PictureWithoutPixels(65536, 16384), LdrFormat::Tiff, LdrOutcome::OutOfMemory},
        {"no picture", wxImage(), LdrFormat::Png, LdrOutcome::Failed},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const TempFolder folder;
        WriteElements(folder.File("a"), OLD);
        const FailureRecorder log;
        EXPECT_EQ(c.outcome, Save(c.image, folder.File("a"), c.format));
        EXPECT_EQ(OLD, ReadBytes(folder.File("a")));
        EXPECT_EQ(1U, log.Lines().size());
    }
    const TempFolder folder;
    EXPECT_EQ(LdrOutcome::Saved, Save(Picture(65500, 1), folder.File("a"), LdrFormat::Jpeg));
    EXPECT_EQ(LdrOutcome::Saved, Save(Picture(65535, 1), folder.File("a"), LdrFormat::Targa));
}
