// Decoding of whole, damaged and hostile files, here and in the child process.
#include "image/ImageDecoder.h"

#include "Util/FileDescriptor.h"
#include "tests/image/Pictures.h"
#include "tests/support/TempFolder.h"
#include "tests/support/TestProcess.h"

#include <exiv2/exiv2.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <tiffio.h>
#include <wx/log.h>
#include <wx/mstream.h>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <numeric>
#include <stdexcept>
#include <utility>

using LS::Tests::BlockPicture;
using LS::Tests::Bytes;
using LS::Tests::Encoded;
using LS::Tests::OpenDescriptors;
using LS::Tests::SamePixels;
using LS::Tests::TempFolder;
using namespace std::chrono_literals;

namespace {

/// Checks at its end that decoding left no child process and no descriptor behind, and no message.
class Footprint {
public:
    Footprint() : m_nDescriptors(OpenDescriptors()) { m_pPrevious = wxLog::SetActiveTarget(&m_log); }
    Footprint(const Footprint&) = delete;
    Footprint& operator=(const Footprint&) = delete;

    ~Footprint()
    {
        EXPECT_EQ(m_nDescriptors, OpenDescriptors());
        EXPECT_EQ(-1, ::waitpid(-1, nullptr, WNOHANG));
        EXPECT_EQ(ECHILD, errno);
        EXPECT_EQ(&m_log, wxLog::SetActiveTarget(m_pPrevious)) << "the log's receiver wasn't restored";
        EXPECT_EQ("", m_log.GetBuffer().utf8_string());
    }

private:
    std::size_t m_nDescriptors;
    wxLogBuffer m_log;
    wxLog* m_pPrevious = nullptr;
};

DecodedImage DecodeBytes(const Bytes& file, std::chrono::milliseconds timeLimit = 10s)
{
    static const TempFolder folder;
    LS::Tests::WriteElements(folder.File("picture"), file);
    return DecodeImage(folder.File("picture"), timeLimit);
}

const struct {
    const char* szName;
    wxBitmapType type;
} FORMATS[] = {
    {"JPEG", wxBITMAP_TYPE_JPEG}, {"PNG", wxBITMAP_TYPE_PNG}, {"TIFF", wxBITMAP_TYPE_TIFF},
    {"BMP", wxBITMAP_TYPE_BMP},   {"GIF", wxBITMAP_TYPE_GIF}, {"PNM", wxBITMAP_TYPE_PNM},
    {"PCX", wxBITMAP_TYPE_PCX},   {"ICO", wxBITMAP_TYPE_ICO}, {"TGA", wxBITMAP_TYPE_TGA},
    {"XPM", wxBITMAP_TYPE_XPM},
};

/// What the image library makes of a whole file.
wxImage DecodedByTheLibrary(const Bytes& file, wxBitmapType type)
{
    wxMemoryInputStream stream(file.data(), file.size());
    wxImage image;
    image.LoadFile(stream, type);
    return image;
}

TEST(DecodeImage, EachFormatByItsContent)
{
    const TempFolder folder;
    const Footprint footprint;
    const wxImage picture = BlockPicture(64, 32);
    for (const auto& format : FORMATS) {
        SCOPED_TRACE(format.szName);
        const Bytes file = Encoded(picture, format.type);
        const wxImage expected = DecodedByTheLibrary(file, format.type);
        EXPECT_NEAR(20, expected.GetRed(24, 8), 6) << "the second colour, up to the format's loss";
        for (const char* szName : {"picture.tga", "\xFF%s.tif"}) {
            LS::Tests::WriteElements(folder.File(szName), file);
            const DecodedImage decoded = DecodeImage(folder.File(szName));
            ASSERT_EQ(DecodeOutcome::Decoded, decoded.outcome) << decoded.sReason;
            EXPECT_TRUE(SamePixels(expected, decoded.image));
            EXPECT_EQ("", decoded.sReason);
        }
    }
    const Bytes bigTiff = LS::Tests::GreyTiff({.nWidth = 64, .nHeight = 64, .bBig = true});
    EXPECT_EQ(77, DecodeBytes(bigTiff).image.GetGreen(63, 63));
}

TEST(DecodeImage, AlphaAndMaskArrive)
{
    wxImage picture = BlockPicture(32, 16);
    picture.SetMaskColour(200, 30, 40);
    const DecodedImage masked = DecodeBytes(Encoded(picture, wxBITMAP_TYPE_XPM));
    ASSERT_TRUE(masked.image.IsOk() && masked.image.HasMask()) << masked.sReason;
    EXPECT_TRUE(masked.image.IsTransparent(0, 0) && !masked.image.IsTransparent(16, 0));

    picture.SetMask(false);
    picture.InitAlpha();
    std::iota(picture.GetAlpha(), picture.GetAlpha() + 512, 0);
    for (const wxBitmapType type : {wxBITMAP_TYPE_PNG, wxBITMAP_TYPE_TGA}) {
        const DecodedImage decoded = DecodeBytes(Encoded(picture, type));
        ASSERT_TRUE(decoded.image.IsOk() && decoded.image.HasAlpha()) << type << decoded.sReason;
        EXPECT_TRUE(std::equal(picture.GetAlpha(), picture.GetAlpha() + 512, decoded.image.GetAlpha()));
    }
}

/// Where Exif's table puts the first row and the first column of a stored picture.
const struct {
    bool bRowsAreColumns, bFromRight, bFromBelow;
} ORIENTATIONS[] = {{false, false, false}, {false, true, false}, {false, true, true}, {false, false, true},
                    {true, false, false},  {true, true, false},  {true, true, true},  {true, false, true}};

/// An upright picture as a file holds it whose tag has this value.
wxImage Stored(const wxImage& upright, int nTag)
{
    const auto& orientation = ORIENTATIONS[nTag - 1];
    wxSize size = upright.GetSize();
    if (orientation.bRowsAreColumns)
        std::swap(size.x, size.y);
    wxImage stored(size);
    for (int nRow = 0; nRow < size.y; ++nRow)
        for (int nColumn = 0; nColumn < size.x; ++nColumn) {
            const int nAcross = orientation.bRowsAreColumns ? nRow : nColumn;
            const int nDown = orientation.bRowsAreColumns ? nColumn : nRow;
            const int x = orientation.bFromRight ? upright.GetWidth() - 1 - nAcross : nAcross;
            const int y = orientation.bFromBelow ? upright.GetHeight() - 1 - nDown : nDown;
            stored.SetRGB(nColumn, nRow, upright.GetRed(x, y), upright.GetGreen(x, y), upright.GetBlue(x, y));
        }
    return stored;
}

/// The colours of the blocks of a picture, row by row, which no coding blurs: "RGB/BYR".
std::string Blocks(const wxImage& image)
{
    std::string sBlocks;
    for (int y = 8; y < image.GetHeight(); y += 16, sBlocks += '/')
        for (int x = 8; x < image.GetWidth(); x += 16)
            sBlocks += image.GetBlue(x, y) > 150    ? 'B'
                       : image.GetRed(x, y) < 100   ? 'G'
                       : image.GetGreen(x, y) > 150 ? 'Y'
                                                    : 'R';
    return sBlocks;
}

/// Decodes a picture whose Exif data gets an orientation.
wxImage DecodeTurned(const TempFolder& folder, const Bytes& file, int nTag)
{
    LS::Tests::WriteElements(folder.File("photo"), file);
    const auto pImage = Exiv2::ImageFactory::open(folder.File("photo"));
    pImage->readMetadata();
    pImage->exifData()["Exif.Image.Orientation"] = static_cast<std::uint16_t>(nTag);
    pImage->writeMetadata();
    const DecodedImage decoded = DecodeImage(folder.File("photo"));
    EXPECT_EQ("", decoded.sReason);
    return decoded.image;
}

TEST(DecodeImage, StandsUprightWhateverTheOrientation)
{
    const TempFolder folder;
    const wxImage upright = BlockPicture(48, 32);
    const std::string sUpright = "RGB/BYR/";
    ASSERT_EQ(sUpright, Blocks(upright));
    for (int nTag = 0; nTag <= 9; ++nTag) {
        wxImage stored = nTag == 0 || nTag == 9 ? upright : Stored(upright, nTag); // these mean nothing
        for (const wxBitmapType type : {wxBITMAP_TYPE_JPEG, wxBITMAP_TYPE_TIFF})
            EXPECT_EQ(sUpright, Blocks(DecodeTurned(folder, Encoded(stored, type), nTag)))
                << "tag " << nTag << ", type " << type;
        stored.SetOption(wxIMAGE_OPTION_TIFF_COMPRESSION, COMPRESSION_JPEG); // goes to a child process
        EXPECT_EQ(sUpright, Blocks(DecodeTurned(folder, Encoded(stored, wxBITMAP_TYPE_TIFF), nTag)))
            << "tag " << nTag << ", watched";
    }
}

TEST(DecodeImage, TurnsAPngWithItsAlphaPlane)
{
    const Bytes exif = {0x00, 0x00, 0x00, 0x1A, 'e',  'X',  'I',  'f',  'I',  'I',  0x2A, 0x00, 0x08,
                        0x00, 0x00, 0x00, 0x01, 0x00, 0x12, 0x01, 0x03, 0x00, 0x01, 0x00, 0x00, 0x00,
                        0x06, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0xB7, 'H',  0x11, 0x29};
    wxImage stored = Stored(BlockPicture(48, 32), 6);
    stored.InitAlpha();
    std::fill_n(stored.GetAlpha(), 32 * 48, 255);
    stored.SetAlpha(0, 45, 7); // the first row is at the right, the first column at the top
    Bytes file = Encoded(stored, wxBITMAP_TYPE_PNG);
    file.insert(file.begin() + 33, exif.begin(), exif.end()); // behind the header
    const wxImage image = DecodeBytes(file).image;
    EXPECT_EQ("RGB/BYR/", Blocks(image));
    ASSERT_TRUE(image.HasAlpha());
    EXPECT_EQ(7, image.GetAlpha(2, 0));
    EXPECT_EQ(255, image.GetAlpha(3, 0));
}

TEST(DecodeImage, Missing)
{
    const TempFolder folder;
    ASSERT_EQ(0, ::mkfifo(folder.File("pipe").c_str(), 0600));
    const Footprint footprint;
    for (const std::string& sPath :
         {folder.File("missing"), folder.Path(), folder.File("pipe"), std::string("/dev/zero")}) {
        SCOPED_TRACE(sPath);
        const DecodedImage decoded = DecodeImage(sPath);
        EXPECT_EQ(DecodeOutcome::Missing, decoded.outcome);
        EXPECT_FALSE(decoded.image.IsOk());
        EXPECT_NE("", decoded.sReason);
    }
}

/// The bytes of a picture whose header claims another size.
Bytes WithSize(wxBitmapType type, std::size_t nAt, const Bytes& size)
{
    Bytes file = Encoded(BlockPicture(64, 32), type);
    std::copy(size.begin(), size.end(), file.begin() + static_cast<std::ptrdiff_t>(nAt));
    return file;
}

TEST(DecodeImage, Undecodable)
{
    const Bytes jpeg = Encoded(BlockPicture(64, 32), wxBITMAP_TYPE_JPEG);
    const Bytes png = Encoded(BlockPicture(64, 32), wxBITMAP_TYPE_PNG);
    const std::size_t nFrame = LS::Tests::Find(jpeg, {0xFF, 0xC0, 0, 17, 8}) + 5;
    const char* const szTooLarge = "more than 512 megapixels";
    const struct {
        const char* szName;
        Bytes file;
        const char* szReason; // a part of it
    } cases[] = {
        {"text", {'h', 'e', 'l', 'l', 'o', '\n'}, "Unknown image data format"},
        {"JPEG cut in its tables", Bytes(jpeg.begin(), jpeg.begin() + 100), "damaged"},
        {"PNG cut in its header", Bytes(png.begin(), png.begin() + 20), "PNG"},
        {"PNG of 100000 x 100000", WithSize(wxBITMAP_TYPE_PNG, 16, {0, 1, 0x86, 0xA0, 0, 1, 0x86, 0xA0}),
         szTooLarge},
        {"JPEG of 65500 x 65500", WithSize(wxBITMAP_TYPE_JPEG, nFrame, {0xFF, 0xDC, 0xFF, 0xDC}), szTooLarge},
        {"TIFF of 100000 x 90000", LS::Tests::GreyTiff({100'000, 90'000}), szTooLarge},
        {"TGA of 65535 x 65535", WithSize(wxBITMAP_TYPE_TGA, 12, {0xFF, 0xFF, 0xFF, 0xFF}), "TGA"},
    };
    const Footprint footprint;
    for (const auto& c : cases) {
        SCOPED_TRACE(c.szName);
        const DecodedImage decoded = DecodeBytes(c.file);
        EXPECT_EQ(DecodeOutcome::Undecodable, decoded.outcome);
        EXPECT_FALSE(decoded.image.IsOk());
        EXPECT_THAT(decoded.sReason, testing::HasSubstr(c.szReason));
    }
}

TEST(DecodeImage, JpegThatEndsEarlyGetsGreyRows)
{
    wxImage picture(64, 640);
    for (int i = 0; i < 3 * 64 * 640; ++i)
        picture.GetData()[i] = static_cast<unsigned char>(i * 7919 >> 5);
    const Bytes file = Encoded(picture, wxBITMAP_TYPE_JPEG);
    const Footprint footprint;
    const DecodedImage whole = DecodeBytes(file);
    const DecodedImage cut =
        DecodeBytes(Bytes(file.begin(), file.begin() + static_cast<std::ptrdiff_t>(file.size() / 2)));
    ASSERT_EQ(DecodeOutcome::Decoded, cut.outcome) << cut.sReason;
    ASSERT_EQ(picture.GetSize(), cut.image.GetSize());
    const wxRect top(0, 0, 64, 64);
    EXPECT_TRUE(SamePixels(whole.image.GetSubImage(top), cut.image.GetSubImage(top)));
    for (const unsigned char nChannel :
         {cut.image.GetRed(9, 639), cut.image.GetGreen(9, 639), cut.image.GetBlue(9, 639)})
        EXPECT_EQ(128, nChannel);
}

pid_t nTestProcess = 0;

/// Ends the process: a decoder apart as if all were well, this program as a failure.
int SilentEnd()
{
    return ::getpid() == nTestProcess ? EXIT_FAILURE : EXIT_SUCCESS;
}

/// A format of this test's own, whose decoder does all that a decoder must not do. The file names the deed.
class RogueHandler : public wxImageHandler {
public:
    static constexpr std::string_view SIGNATURE = "rogue:";

    RogueHandler()
    {
        SetName("rogue");
        SetType(wxBITMAP_TYPE_PICT); // which no handler of the library takes
    }

    bool LoadFile(wxImage* pImage, wxInputStream& stream, bool, int) override
    {
        std::string sDeed(100, '\0');
        stream.SeekI(SIGNATURE.size());
        sDeed.resize(stream.Read(sDeed.data(), sDeed.size()).LastRead());
        if (sDeed == "crash")
            std::raise(SIGSEGV);
        if (sDeed == "abort")
            std::abort();
        if (sDeed == "leave")
            ::_exit(SilentEnd());
        if (sDeed == "exit")
            std::exit(SilentEnd()); // NOLINT(concurrency-mt-unsafe): the deed
        if (sDeed == "throw")
            throw std::runtime_error("thrown on purpose");
        if (sDeed == "hang")
            for (;;)
                ::pause();
        if (sDeed == "greedy")
            return Refuse(::mmap(nullptr, std::size_t{16} << 30, PROT_READ | PROT_WRITE,
                                 MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0) == MAP_FAILED);
        if (sDeed == "look around")
            return Refuse(!SeesADevice());
        if (sDeed == "noise")
            return Noise();
        if (sDeed.starts_with("nonsense "))
            Nonsense(sDeed.back());
        return pImage->Create(3, 2);
    }

private:
    bool DoCanRead(wxInputStream& stream) override
    {
        std::string sHead(SIGNATURE.size(), '\0');
        return stream.Read(sHead.data(), sHead.size()).LastRead() == sHead.size() && sHead == SIGNATURE;
    }

    static bool Refuse(bool bRefused)
    {
        wxLogError(bRefused ? "it was refused" : "it worked");
        return false;
    }

    /// Whether a descriptor behind the standard streams is a device; the test holds one.
    static bool SeesADevice()
    {
        struct stat status {};
        for (int nFile = STDERR_FILENO + 1; nFile < 100; ++nFile)
            if (::fstat(nFile, &status) == 0 && S_ISCHR(status.st_mode))
                return true;
        return false;
    }

    static bool Noise()
    {
        std::fprintf(stderr, "noise\n");
        std::printf("noise\n");
        std::fflush(stdout);
        wxLogDebug("a trace");
        wxLogMessage("a message");
        wxLogWarning("a warning");
        wxLogError("an error");
        return false;
    }

    /// Answers in the decoder's place.
    static void Nonsense(char nByte)
    {
        const Bytes answer(64, static_cast<unsigned char>(nByte));
        struct stat status {};
        for (int nFile = 3; nFile < 100; ++nFile)
            if (::fstat(nFile, &status) == 0 && S_ISFIFO(status.st_mode) &&
                ::write(nFile, answer.data(), answer.size()) == static_cast<ssize_t>(answer.size()))
                ::_exit(SilentEnd());
    }
};

const char* szExitMark = nullptr;

void MarkForeignExit()
{
    if (::getpid() != nTestProcess)
        ::close(::open(szExitMark, O_CREAT | O_WRONLY | O_CLOEXEC, 0600));
}

TEST(DecodeImage, RogueDecodersAreContained)
{
    const struct {
        const char* szDeed;
        const char* szReason; // a part of it
    } cases[] = {
        {"crash", "crashed: Segmentation fault"},
        {"abort", "crashed: Aborted"},
        {"leave", "ended without an answer"},
        {"exit", "ended without an answer"},
        {"throw", "thrown on purpose"},
        {"hang", "took too long"},
        {"greedy", "it was refused"},
        {"look around", "it was refused"},
        {"noise", "a warning; an error"},
        {"nonsense \xFF", "makes no sense"},
        {"nonsense \x01", "makes no sense"},
    };
    const TempFolder folder;
    const std::string sExitMark = folder.File("exit");
    nTestProcess = ::getpid();
    szExitMark = sExitMark.c_str();
    std::atexit(MarkForeignExit);
    auto* const previousHandler = std::signal(SIGSEGV, [](int) { ::_exit(SilentEnd()); });
    const LS::Util::FileDescriptor device(::open("/dev/null", O_RDONLY | O_CLOEXEC)); // to look around for
    wxImage::AddHandler(new RogueHandler);

    for (const auto& c : cases) {
        SCOPED_TRACE(c.szDeed);
        const Footprint footprint;
        std::string sFile(RogueHandler::SIGNATURE);
        sFile += c.szDeed;
        testing::internal::CaptureStderr();
        testing::internal::CaptureStdout();
        const DecodedImage decoded = DecodeBytes(Bytes(sFile.begin(), sFile.end()),
                                                 std::string_view(c.szDeed) == "hang" ? 200ms : 10s);
        EXPECT_EQ("", testing::internal::GetCapturedStdout());
        EXPECT_EQ("", testing::internal::GetCapturedStderr());
        EXPECT_EQ(DecodeOutcome::Undecodable, decoded.outcome);
        EXPECT_THAT(decoded.sReason, testing::HasSubstr(c.szReason));
        EXPECT_TRUE(folder.Names().empty()) << "the child ran an exit handler";
    }
    std::string sGood(RogueHandler::SIGNATURE);
    EXPECT_EQ(DecodeOutcome::Decoded, DecodeBytes(Bytes(sGood.begin(), sGood.end())).outcome);

    wxImage::RemoveHandler("rogue");
    std::signal(SIGSEGV, previousHandler);
}

} // namespace
