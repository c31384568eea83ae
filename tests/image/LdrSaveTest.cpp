// 8-bit saves: the right bytes under the name, or the old file and nothing else.
#include "image/LdrSave.h"

#include "tests/image/Pictures.h"
#include "tests/support/FailingCalls.h"
#include "tests/support/FailureRecorder.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>
#include <wx/image.h>

#include <cerrno>
#include <filesystem>

using namespace LS::Tests;
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
    } cases[] = {{FORMATS[0], 1}, {FORMATS[0], 100}, {FORMATS[1], 95}, {FORMATS[3], 95}, {FORMATS[4], 95}};
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.format.name << ", quality " << c.quality);
        wxImage expected = BlockPicture(61, 47);
        if (c.format.format == LdrFormat::Jpeg && c.quality < 100)
            expected.SetOption("quality", c.quality);
        ASSERT_TRUE(expected.SaveFile(wxString(folder.File("expected")), c.format.type));
        const FailureRecorder log;
        LdrOptions options;
        options.nQuality = c.quality;
        const std::string sPath = folder.File("\xff%s \xe7\x85\xa7");
        ASSERT_EQ(LdrOutcome::Saved, Save(BlockPicture(61, 47), sPath, c.format.format, options));
        EXPECT_TRUE(ReadBytes(folder.File("expected")) == ReadBytes(sPath));
        EXPECT_TRUE(log.Lines().empty());
    }
}

TEST(SaveLdr, TiffOptionsReachTheWriter)
{
    const TempFolder folder;
    const wxImage picture = BlockPicture(200, 200);
    LdrOptions options;
    const auto size = [&](unsigned nCompression) {
        options.nCompression = nCompression;
        EXPECT_EQ(LdrOutcome::Saved, Save(picture, folder.File("a"), LdrFormat::Tiff, options));
        return fs::file_size(folder.File("a"));
    };
    EXPECT_GT(size(0), 160000U);
    EXPECT_LT(size(1), 120000U);
}

TEST(SaveLdr, LateErrorsAndExceptionsKeepTheOldFile)
{
    for (const FormatCase& format : FORMATS)
        for (const auto& [nError, sReason] : {std::pair{ENOSPC, std::string("No space left on device")},
                                              {THROWS, "a system call that throws"}}) {
            SCOPED_TRACE(testing::Message() << format.name << ", " << sReason);
            const TempFolder folder;
            WriteElements(folder.File("a"), OLD);
            const FailureRecorder log;
            const FailingCall disk(SystemCall::Fsync, nError);
            EXPECT_EQ(nError == THROWS ? LdrOutcome::Exception : LdrOutcome::Failed,
                      Save(BlockPicture(3, 2), folder.File("a"), format.format));
            EXPECT_EQ(OLD, ReadBytes(folder.File("a")));
            EXPECT_EQ(std::vector<std::string>{"a"}, folder.Names());
            EXPECT_EQ(std::vector{"save: " + folder.File("a") + ": " + sReason}, log.Lines());
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
        {"JPEG of 65501 columns", BlockPicture(65501, 1), LdrFormat::Jpeg, LdrOutcome::Failed},
        {"Targa of 65536 columns", BlockPicture(65536, 1), LdrFormat::Targa, LdrOutcome::Failed},
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
    EXPECT_EQ(LdrOutcome::Saved, Save(BlockPicture(65500, 1), folder.File("a"), LdrFormat::Jpeg));
    EXPECT_EQ(LdrOutcome::Saved, Save(BlockPicture(65535, 1), folder.File("a"), LdrFormat::Targa));
}
