// 8-bit saves: the right bytes under the name, or the old file and nothing else.
#include "image/LdrSave.h"

#include "tests/support/FailingCalls.h"
#include "tests/support/FailureRecorder.h"
#include "tests/support/ResourceLimit.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>
#include <wx/image.h>
#include <wx/init.h>
#include <wx/log.h>

#include <cerrno>
#include <clocale>
#include <cstdlib>
#include <filesystem>
#include <memory>

#include <sys/stat.h>
#include <unistd.h>

using namespace LS::Tests;
namespace fs = std::filesystem;

namespace {

/// The image library without a display. What is saved must not depend on it; what is read back does.
class Library : public testing::Environment {
public:
    void SetUp() override
    {
        m_pLibrary = std::make_unique<wxInitializer>();
        ASSERT_TRUE(m_pLibrary->IsOk());
        wxInitAllImageHandlers();
    }
    void TearDown() override { m_pLibrary.reset(); }

private:
    std::unique_ptr<wxInitializer> m_pLibrary;
};

[[maybe_unused]] const testing::Environment* const library = testing::AddGlobalTestEnvironment(new Library);

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

/// A picture of any size over three bytes, for code that must not get as far as the pixels.
wxImage PictureWithoutPixels(int nWidth, int nHeight)
{
    static unsigned char pixel[3];
    return {nWidth, nHeight, pixel, true};
}

LdrOutcome Save(wxImage image, const std::string& sPath, LdrFormat format, const LdrOptions& options = {})
{
    testing::internal::CaptureStderr(); // the TIFF writer's own lines, which its test looks at
    const LdrOutcome outcome = SaveLdr(image, sPath, format, options);
    testing::internal::GetCapturedStderr();
    return outcome;
}

Bytes Pixels(const wxImage& image)
{
    const std::ptrdiff_t nBytes = std::ptrdiff_t{3} * image.GetWidth() * image.GetHeight();
    return {image.GetData(), image.GetData() + nBytes};
}

unsigned LittleEndian(const Bytes& bytes, std::size_t nAt, int nBytes)
{
    unsigned nValue = 0;
    for (int i = nBytes; i-- > 0;)
        nValue = nValue << 8 | bytes.at(nAt + static_cast<std::size_t>(i));
    return nValue;
}

const Bytes OLD{'o', 'l', 'd'};

} // namespace

TEST(SaveLdr, SameBytesAsTheImageLibrary)
{
    const TempFolder folder;
    const struct {
        FormatCase format;
        int quality;
        bool setsQuality;
    } cases[] = {
        {FORMATS[0], 1, true},   {FORMATS[0], 95, true},  {FORMATS[0], 99, true},  {FORMATS[0], 100, false},
        {FORMATS[1], 95, false}, {FORMATS[3], 95, false}, {FORMATS[4], 95, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.format.name << ", quality " << c.quality);
        wxImage expected = Picture(61, 47);
        if (c.setsQuality)
            expected.SetOption("quality", c.quality);
        ASSERT_TRUE(expected.SaveFile(wxString(folder.File("expected")), c.format.type));
        const FailureRecorder log;
        LdrOptions options;
        options.nQuality = c.quality;
        ASSERT_EQ(LdrOutcome::Saved, Save(Picture(61, 47), folder.File("a"), c.format.format, options));
        EXPECT_EQ(ReadBytes(folder.File("expected")), ReadBytes(folder.File("a")));
        EXPECT_TRUE(log.Lines().empty());
    }
}

TEST(SaveLdr, PicturesReadBack)
{
    const TempFolder folder;
    for (const FormatCase& format : FORMATS) {
        SCOPED_TRACE(format.name);
        const wxImage picture = Picture(61, 47);
        ASSERT_EQ(LdrOutcome::Saved, Save(picture, folder.File("a"), format.format));
        const wxLogNull noWarnings; // of a fourth sample that the TIFF file doesn't explain
        wxImage image;
        ASSERT_TRUE(image.LoadFile(wxString(folder.File("a")), format.type));
        ASSERT_EQ(picture.GetSize(), image.GetSize());
        EXPECT_EQ(format.format != LdrFormat::Jpeg, Pixels(picture) == Pixels(image));
    }
}

TEST(SaveLdr, HeadersOfTheSimpleFormats)
{
    const TempFolder folder;
    wxImage picture(3, 2);
    picture.SetRGB(0, 1, 1, 2, 3); // lower left, which a bitmap has first
    ASSERT_EQ(LdrOutcome::Saved, Save(picture, folder.File("a"), LdrFormat::Bmp));
    const Bytes bmp = ReadBytes(folder.File("a"));
    ASSERT_EQ(54U + 2 * 12, bmp.size()); // rows are filled up to four bytes
    EXPECT_EQ((Bytes{'B', 'M'}), Bytes(bmp.begin(), bmp.begin() + 2));
    EXPECT_EQ(bmp.size(), LittleEndian(bmp, 2, 4));
    EXPECT_EQ(54U, LittleEndian(bmp, 10, 4));
    EXPECT_EQ(3U, LittleEndian(bmp, 18, 4));
    EXPECT_EQ(2U, LittleEndian(bmp, 22, 4));
    EXPECT_EQ(24U, LittleEndian(bmp, 28, 2));
    EXPECT_EQ((Bytes{3, 2, 1, 0}), Bytes(bmp.begin() + 54, bmp.begin() + 58));

    ASSERT_EQ(LdrOutcome::Saved, Save(picture, folder.File("a"), LdrFormat::Targa));
    const Bytes tga = ReadBytes(folder.File("a"));
    EXPECT_EQ(2, tga.at(2)); // true colour, not compressed
    EXPECT_EQ(3U, LittleEndian(tga, 12, 2));
    EXPECT_EQ(2U, LittleEndian(tga, 14, 2));
    EXPECT_EQ(24, tga.at(16));
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
    EXPECT_LT(size(1), 120000U);

    const FailureRecorder log;
    WriteElements(folder.File("a"), OLD);
    options.nCompression = 4;
    EXPECT_EQ(LdrOutcome::Failed, Save(picture, folder.File("a"), LdrFormat::Tiff, options));
    EXPECT_EQ(OLD, ReadBytes(folder.File("a")));
    ASSERT_EQ(1U, log.Lines().size());
    EXPECT_NE(std::string::npos, log.Lines()[0].find("RowsPerStrip")) << log.Lines()[0];
}

TEST(SaveLdr, FullDiskKeepsTheOldFile)
{
    for (const FormatCase& format : FORMATS)
        for (const int nEdge : {1, 4, 300}) {
            const TempFolder folder;
            const std::string sPath = folder.File("a");
            ASSERT_EQ(LdrOutcome::Saved, Save(Picture(nEdge, nEdge), sPath, format.format));
            const rlim_t nSize = fs::file_size(sPath);
            WriteElements(sPath, OLD);
            for (const rlim_t nLimit : {rlim_t{0}, rlim_t{1}, nSize / 2, nSize - 1}) {
                SCOPED_TRACE(testing::Message() << format.name << ", edge " << nEdge << ", " << nLimit
                                                << " of " << nSize << " bytes");
                const FailureRecorder log;
                const ResourceLimit full(RLIMIT_FSIZE, nLimit);
                EXPECT_EQ(LdrOutcome::Failed, Save(Picture(nEdge, nEdge), sPath, format.format));
                EXPECT_EQ(OLD, ReadBytes(sPath));
                EXPECT_EQ(std::vector<std::string>{"a"}, folder.Names());
                ASSERT_EQ(1U, log.Lines().size());
                EXPECT_EQ(0U, log.Lines()[0].find("save: " + sPath + ": ")) << log.Lines()[0];
            }
            const ResourceLimit justEnough(RLIMIT_FSIZE, nSize);
            EXPECT_EQ(LdrOutcome::Saved, Save(Picture(nEdge, nEdge), sPath, format.format));
            EXPECT_EQ(nSize, fs::file_size(sPath));
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

TEST(SaveLdr, BadPlacesAreCleanFailures)
{
    const TempFolder folder;
    fs::create_directory(folder.File("folder"));
    ASSERT_EQ(0, mkfifo(folder.File("pipe").c_str(), 0600));
    const auto before = folder.Names();
    std::vector<std::string> vsPlaces{"",
                                      folder.File("missing/a"),
                                      folder.File("folder"),
                                      folder.File("pipe"),
                                      folder.File(std::string(256, 'n')),
                                      "/dev/full",
                                      "/proc/a"};
    if (geteuid() != 0) { // root may write there all the same; /proc stands for it then
        fs::create_directory(folder.File("folder/closed"));
        fs::permissions(folder.File("folder/closed"), fs::perms::owner_read | fs::perms::owner_exec);
        vsPlaces.push_back(folder.File("folder/closed/a"));
    }
    for (const FormatCase& format : FORMATS)
        for (const std::string& sPlace : vsPlaces) {
            SCOPED_TRACE(testing::Message() << format.name << " to " << sPlace);
            const FailureRecorder log;
            EXPECT_EQ(LdrOutcome::Failed, Save(Picture(3, 2), sPlace, format.format));
            EXPECT_EQ(1U, log.Lines().size());
        }
    EXPECT_EQ(before, folder.Names());
}

TEST(SaveLdr, AnyNameAndLinksAreFineInAnyLocale)
{
    ASSERT_STREQ("C", std::setlocale(LC_ALL, nullptr));
    for (const FormatCase& format : FORMATS) {
        SCOPED_TRACE(format.name);
        const TempFolder folder;
        fs::create_symlink("behind", folder.File("link"));
        for (const std::string& sName : {std::string("caf\xc3\xa9 \xe7\x85\xa7"), std::string("\xff%s"),
                                         std::string(255, 'n'), std::string("link")})
            EXPECT_EQ(LdrOutcome::Saved, Save(Picture(3, 2), folder.File(sName), format.format)) << sName;
        EXPECT_TRUE(fs::is_symlink(folder.File("link")));
        EXPECT_LT(0U, fs::file_size(folder.File("behind")));
        EXPECT_EQ(5U, folder.Names().size());
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
        {"Targa of 65536 rows", Picture(1, 65536), LdrFormat::Targa, LdrOutcome::Failed},
        {"bitmap of 4 GiB", PictureWithoutPixels(65536, 21846), LdrFormat::Bmp, LdrOutcome::Failed},
        {"TIFF of 4 GiB", PictureWithoutPixels(65536, 16384), LdrFormat::Tiff, LdrOutcome::OutOfMemory},
        {"no picture", wxImage(), LdrFormat::Png, LdrOutcome::Failed},
        {"no picture", wxImage(), LdrFormat::Tiff, LdrOutcome::Failed},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const TempFolder folder;
        WriteElements(folder.File("a"), OLD);
        const FailureRecorder log;
        EXPECT_EQ(c.outcome, Save(c.image, folder.File("a"), c.format));
        EXPECT_EQ(OLD, ReadBytes(folder.File("a")));
        EXPECT_EQ(std::vector<std::string>{"a"}, folder.Names());
        EXPECT_EQ(1U, log.Lines().size());
    }
    const TempFolder folder;
    EXPECT_EQ(LdrOutcome::Saved, Save(Picture(65500, 1), folder.File("a"), LdrFormat::Jpeg));
    EXPECT_EQ(LdrOutcome::Saved, Save(Picture(65535, 1), folder.File("a"), LdrFormat::Targa));
}
