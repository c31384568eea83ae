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
#include <numeric>
#include <utility>

using namespace LS::Tests;
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
    WriteElements(folder.File("picture"), file);
    return DecodeImage(folder.File("picture"), timeLimit);
}

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
    for (const wxBitmapType type :
         {wxBITMAP_TYPE_JPEG, wxBITMAP_TYPE_PNG, wxBITMAP_TYPE_TIFF, wxBITMAP_TYPE_BMP, wxBITMAP_TYPE_GIF,
          wxBITMAP_TYPE_PNM, wxBITMAP_TYPE_PCX, wxBITMAP_TYPE_ICO, wxBITMAP_TYPE_TGA, wxBITMAP_TYPE_XPM}) {
        SCOPED_TRACE(type);
        const Bytes file = Encoded(picture, type);
        const wxImage expected = DecodedByTheLibrary(file, type);
        EXPECT_NEAR(20, expected.GetRed(24, 8), 6) << "the second colour, up to the format's loss";
        WriteElements(folder.File("\xFF%s.tga"), file);
        const DecodedImage decoded = DecodeImage(folder.File("\xFF%s.tga"));
        EXPECT_TRUE(SamePixels(expected, decoded.image));
        EXPECT_EQ("", decoded.sReason);
    }
    const Bytes bigTiff = GreyTiff({.nWidth = 64, .nHeight = 64, .bBig = true});
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
    WriteElements(folder.File("photo"), file);
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
    wxImage stored = BlockPicture(48, 32);
    const std::string sStored = "RGB/BYR/";
    ASSERT_EQ(sStored, Blocks(stored));
    const std::string upright[] = {sStored,     sStored,     "BGR/RYB/",  "RYB/BGR/",  "BYR/RGB/",
                                   "RB/GY/BR/", "BR/YG/RB/", "RB/YG/BR/", "BR/GY/RB/", sStored};
    for (int nTag = 0; nTag <= 9; ++nTag) {
        SCOPED_TRACE(nTag); // the first and the last mean nothing
        EXPECT_EQ(upright[nTag], Blocks(DecodeTurned(folder, Encoded(stored, wxBITMAP_TYPE_JPEG), nTag)));
        stored.SetOption(wxIMAGE_OPTION_TIFF_COMPRESSION, COMPRESSION_JPEG); // goes to a child process
        EXPECT_EQ(upright[nTag], Blocks(DecodeTurned(folder, Encoded(stored, wxBITMAP_TYPE_TIFF), nTag)));
    }
}

TEST(DecodeImage, Missing)
{
    const TempFolder folder;
    ASSERT_EQ(0, ::mkfifo(folder.File("pipe").c_str(), 0600));
    const Footprint footprint;
    for (const std::string& sPath : {folder.File("missing"), folder.Path(), folder.File("pipe")}) {
        const DecodedImage decoded = DecodeImage(sPath);
        EXPECT_EQ(DecodeOutcome::Missing, decoded.outcome) << sPath;
        EXPECT_NE("", decoded.sReason) << sPath;
    }
}

TEST(DecodeImage, Undecodable)
{
    const Bytes jpeg = Encoded(BlockPicture(64, 32), wxBITMAP_TYPE_JPEG);
    const Bytes png = Encoded(BlockPicture(64, 32), wxBITMAP_TYPE_PNG);
    Bytes tga = Encoded(BlockPicture(64, 32), wxBITMAP_TYPE_TGA);
    std::fill_n(tga.begin() + 12, 4, 0xFF); // 65535 x 65535
    const struct {
        const char* szName;
        Bytes file;
        const char* szReason; // a part of it
    } cases[] = {
        {"text", {'h', 'e', 'l', 'l', 'o', '\n'}, "Unknown image data format"},
        {"JPEG cut in its tables", Bytes(jpeg.begin(), jpeg.begin() + 100), "damaged"},
        {"PNG cut in its header", Bytes(png.begin(), png.begin() + 20), "PNG"},
        {"huge TIFF", GreyTiff({100'000, 90'000}), "more than 512 megapixels"},
        {"huge TGA", tga, "TGA"},
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
    Bytes file = Encoded(BlockPicture(64, 6400), wxBITMAP_TYPE_JPEG);
    file.resize(file.size() / 2);
    const DecodedImage cut = DecodeBytes(file);
    ASSERT_EQ(DecodeOutcome::Decoded, cut.outcome) << cut.sReason;
    EXPECT_EQ("RGBY/", Blocks(cut.image.GetSubImage({0, 0, 64, 16})));
    EXPECT_EQ(128, cut.image.GetRed(9, 6399));
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
        if (sDeed == "leave")
            ::_exit(EXIT_FAILURE);
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
        if (sDeed == "nonsense")
            Nonsense();
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
        wxLogWarning("a warning");
        wxLogError("an error");
        return false;
    }

    /// Answers in the decoder's place.
    static void Nonsense()
    {
        const Bytes answer(64, 1);
        struct stat status {};
        for (int nFile = 3; nFile < 100; ++nFile)
            if (::fstat(nFile, &status) == 0 && S_ISFIFO(status.st_mode) &&
                ::write(nFile, answer.data(), answer.size()) == static_cast<ssize_t>(answer.size()))
                ::_exit(EXIT_FAILURE);
    }
};

TEST(DecodeImage, RogueDecodersAreContained)
{
    const std::pair<std::string, const char*> cases[] = {
        // what it does, and a part of the reason
        {"crash", "crashed: Segmentation fault"},
        {"leave", "ended without an answer"},
        {"hang", "took too long"},
        {"greedy", "it was refused"},
        {"look around", "it was refused"},
        {"noise", "a warning; an error"},
        {"nonsense", "makes no sense"},
    };
    const LS::Util::FileDescriptor device(::open("/dev/null", O_RDONLY | O_CLOEXEC)); // to look around for
    wxImage::AddHandler(new RogueHandler);

    for (const auto& [sDeed, szReason] : cases) {
        SCOPED_TRACE(sDeed);
        const Footprint footprint;
        const std::string sFile = std::string(RogueHandler::SIGNATURE) + sDeed;
        testing::internal::CaptureStderr();
        const DecodedImage decoded =
            DecodeBytes(Bytes(sFile.begin(), sFile.end()), sDeed == "hang" ? 200ms : 10s);
        EXPECT_EQ("", testing::internal::GetCapturedStderr());
        EXPECT_EQ(DecodeOutcome::Undecodable, decoded.outcome);
        EXPECT_THAT(decoded.sReason, testing::HasSubstr(szReason));
    }
    wxImage::RemoveHandler("rogue");
}

} // namespace
