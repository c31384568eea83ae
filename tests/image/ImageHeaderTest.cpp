// Formats and sizes, read from the first bytes of a file.
#include "image/ImageHeader.h"

#include "Util/FileDescriptor.h"
#include "tests/image/Pictures.h"
#include "tests/support/BytePieces.h"
#include "tests/support/TempFolder.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <tiffio.h>
#include <wx/log.h>

using namespace LS::Tests;

namespace {

LS::Util::FileDescriptor Opened(const TempFolder& folder, const Bytes& bytes)
{
    WriteElements(folder.File("picture"), bytes);
    return LS::Util::FileDescriptor(::open(folder.File("picture").c_str(), O_RDONLY | O_CLOEXEC));
}

const Bytes START = {0xFF, 0xD8};
const Bytes FRAME = {0xFF, 0xC0, 0, 11, 8, 0x12, 0x34, 0x56, 0x78, 1, 1, 0x11, 0}; // 0x5678 x 0x1234

TEST(ImageHeader, FormatAndPixels)
{
    constexpr std::uint64_t PIXELS = 24ULL * 16;
    constexpr std::uint64_t FRAME_PIXELS = 0x5678ULL * 0x1234;
    const wxImage picture = BlockPicture(24, 16);
    Bytes hugePng = Encoded(picture, wxBITMAP_TYPE_PNG);
    for (const std::size_t nAt : {16U, 20U})
        hugePng[nAt] = 0x7F; // the high bytes of width and height
    Bytes progressive = FRAME;
    progressive[1] = 0xC2;
    const Bytes comment5000 = Joined({{0xFF, 0xFE, 5002 >> 8, 5002 & 0xFF}, Bytes(5000, 0xFF)});

    const struct {
        const char* szName;
        Bytes file;
        PictureFormat format;
        std::uint64_t nPixels;
    } cases[] = {
        {"empty", {}, PictureFormat::Other, 0},

        {"huge PNG", hugePng, PictureFormat::Png, 0x7F000018ULL * 0x7F000010ULL},
        {"JPEG", Encoded(picture, wxBITMAP_TYPE_JPEG), PictureFormat::Jpeg, PIXELS},
        {"progressive frame", Joined({START, progressive}), PictureFormat::Jpeg, FRAME_PIXELS},
        {"stray bytes", Joined({START, {1, 2, 0xFF, 0, 3}, FRAME}), PictureFormat::Jpeg, FRAME_PIXELS},
        {"Huffman tables are no frame", Joined({START, {0xFF, 0xC4, 0, 3, 9}, FRAME}), PictureFormat::Jpeg,
         FRAME_PIXELS},
        {"segments longer than the buffer", Joined({START, comment5000, comment5000, FRAME}),
         PictureFormat::Jpeg, FRAME_PIXELS},
        {"scan before the frame", Joined({START, {0xFF, 0xDA, 0, 2}, FRAME}), PictureFormat::Jpeg, 0},

        {"TIFF with 64-bit offsets", GreyTiff({.nWidth = 64, .nHeight = 64, .bBig = true}),
         PictureFormat::Tiff, 64ULL * 64},
        {"huge tile", GreyTiff({64, 64, 65'536}), PictureFormat::Tiff, 65'536ULL * 65'536},
        {"TIFF without a directory", {'M', 'M', 0, 42, 0, 0, 0, 8}, PictureFormat::Tiff, 0},
    };
    const wxLogNull silence; // libtiff's words on the broken ones
    const TempFolder folder;
    for (const auto& c : cases) {
        SCOPED_TRACE(c.szName);
        const LS::Util::FileDescriptor file = Opened(folder, c.file);
        const PictureFormat format = FormatOf(file.Get());
        EXPECT_EQ(c.format, format);
        EXPECT_EQ(c.nPixels, PixelsAsked(file.Get(), format));
        EXPECT_EQ(0, ::lseek(file.Get(), 0, SEEK_CUR)) << "the decoder starts here";
    }
}

TEST(ImageHeader, Scans)
{
    constexpr int MOST = 5;
    Bytes progressive = FRAME, threeChannels = FRAME;
    progressive[1] = 0xC2;
    threeChannels[9] = 3;
    const Bytes scan = {0xFF, 0xDA, 0, 8, 1, 1, 0, 0, 63, 0, 0x12, 0xFF, 0, 0x34}; // with a stuffed zero
    const Bytes end = {0xFF, 0xD9};
    const Bytes inComment = {0xFF, 0xFE, 0, 12, 0xFF, 0xDA, 0, 8, 1, 1, 0, 0, 63, 0};
    const struct {
        const char* szName;
        Bytes file;
        int nScans;
    } cases[] = {
        {"the decoder stops behind a first one of all channels", Joined({START, FRAME, scan, scan, end}), 1},
        {"a channel each", Joined({START, threeChannels, scan, scan, scan, end}), 3},
        {"progressive", Joined({START, progressive, scan, scan, end}), 2},
        {"in a comment", Joined({START, progressive, scan, inComment, scan, end}), 2},
        {"more", Joined({START, progressive, scan, scan, scan, scan, scan, scan, scan, end}), 6},
    };
    const TempFolder folder;
    for (const auto& c : cases) {
        SCOPED_TRACE(c.szName);
        const LS::Util::FileDescriptor file = Opened(folder, c.file);
        EXPECT_EQ(c.nScans, Scans(file.Get(), PictureFormat::Jpeg, MOST));
        EXPECT_EQ(1, Scans(file.Get(), PictureFormat::Png, MOST));
    }
}

TEST(ImageHeader, ChunksOfAPng)
{
    const Bytes whole = Encoded(BlockPicture(24, 16), wxBITMAP_TYPE_PNG);
    Bytes long2GB = whole;
    long2GB[Find(whole, {'I', 'D', 'A', 'T'}) - 4] = 0x7F;
    const struct {
        const char* szName;
        Bytes file;
        bool bHolds;
    } cases[] = {
        {"whole", whole, true},
        {"more behind the last", Joined({whole, {1, 2, 3}}), true},
        {"without the last check sum", Bytes(whole.begin(), whole.end() - 1), false},
        {"a chunk of 2 GB", long2GB, false},
    };
    const TempFolder folder;
    for (const auto& c : cases) {
        const LS::Util::FileDescriptor file = Opened(folder, c.file);
        EXPECT_EQ(c.bHolds, HoldsItsChunks(file.Get(), PictureFormat::Png)) << c.szName;
    }
}

TEST(ImageHeader, LayoutOfATiff)
{
    const struct {
        const char* szName;
        Bytes file;
        bool bUsual;
    } cases[] = {
        {"JPEG", GreyTiff({.nWidth = 64, .nHeight = 64, .nCompression = COMPRESSION_JPEG}), false},
        {"five samples", GreyTiff({.nWidth = 64, .nHeight = 64, .nSamples = 5}), false},
        {"a tile", GreyTiff({64, 64, 1024}), true},
        {"tiles that reach far beyond the picture", GreyTiff({16, 160'000, 65'536, 16}), false},
    };
    const TempFolder folder;
    for (const auto& c : cases) {
        SCOPED_TRACE(c.szName);
        const LS::Util::FileDescriptor file = Opened(folder, c.file);
        EXPECT_EQ(c.bUsual, HasUsualLayout(file.Get(), PictureFormat::Tiff));
        EXPECT_TRUE(HasUsualLayout(file.Get(), PictureFormat::Png)) << "that asks about other formats";
        EXPECT_EQ(0, ::lseek(file.Get(), 0, SEEK_CUR)) << "the decoder starts here";
    }
}

} // namespace
