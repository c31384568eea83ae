// Writes small pictures with the libraries, and by hand where none writes them.
#include "tests/faults/SamplePictures.h"

#include "tests/image/Pictures.h"
#include "tests/support/BytePieces.h"

#include <wx/imagpng.h>
#include <wx/mstream.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <stdexcept>
#include <string_view>

#include <jpeglib.h> // wants the declarations of cstdio
#include <tiffio.h>
#include <zlib.h>

namespace LS::Tests {

namespace {

constexpr int WIDTH = 40, HEIGHT = 24;

unsigned char Level(int x, int y)
{
    return static_cast<unsigned char>(5 * x + 3 * y + x * y % 7);
}

/// An animated cursor of one frame: a RIFF file around a cursor.
Bytes AnimatedCursor(const Bytes& cursor)
{
    Bytes header;
    for (const unsigned nNumber : {36U, 1U, 1U, 0U, 0U, 0U, 0U, 10U, 1U})
        Append(header, LittleEndian(nNumber));
    const Bytes frames = Joined({BytesOf("fram"), RiffChunk("icon", cursor)});
    return RiffChunk("RIFF", Joined({BytesOf("ACON"), RiffChunk("anih", header), RiffChunk("LIST", frames)}));
}

struct TiffKind {
    const char* szName;
    std::uint16_t nCompression, nBits, nSamples, nPhotometric;
    bool bTiled = false;
    const char* szMode = "w";
};

constexpr TiffKind TIFF_KINDS[] = {
    {"none.tif", COMPRESSION_NONE, 8, 3, PHOTOMETRIC_RGB},
    {"big-endian.tif", COMPRESSION_NONE, 16, 3, PHOTOMETRIC_RGB, false, "wb"},
    {"deflate.tif", COMPRESSION_ADOBE_DEFLATE, 8, 4, PHOTOMETRIC_RGB},
    {"packbits.tif", COMPRESSION_PACKBITS, 8, 1, PHOTOMETRIC_MINISBLACK},
    {"jpeg.tif", COMPRESSION_JPEG, 8, 3, PHOTOMETRIC_YCBCR},
    {"fax4.tif", COMPRESSION_CCITTFAX4, 1, 1, PHOTOMETRIC_MINISWHITE},
    {"tiles.tif", COMPRESSION_LZW, 8, 3, PHOTOMETRIC_RGB, true},
    {"big.tif", COMPRESSION_LZW, 8, 3, PHOTOMETRIC_RGB, false, "w8"},
};

void SetTags(TIFF* pTiff, const TiffKind& kind)
{
    TIFFSetField(pTiff, TIFFTAG_IMAGEWIDTH, WIDTH);
    TIFFSetField(pTiff, TIFFTAG_IMAGELENGTH, HEIGHT);
    TIFFSetField(pTiff, TIFFTAG_BITSPERSAMPLE, kind.nBits);
    TIFFSetField(pTiff, TIFFTAG_SAMPLESPERPIXEL, kind.nSamples);
    TIFFSetField(pTiff, TIFFTAG_PHOTOMETRIC, kind.nPhotometric);
    TIFFSetField(pTiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
    TIFFSetField(pTiff, TIFFTAG_COMPRESSION, kind.nCompression);
    if (kind.nCompression == COMPRESSION_JPEG)
        TIFFSetField(pTiff, TIFFTAG_JPEGCOLORMODE, JPEGCOLORMODE_RGB);
    if (kind.bTiled) {
        TIFFSetField(pTiff, TIFFTAG_TILEWIDTH, 16);
        TIFFSetField(pTiff, TIFFTAG_TILELENGTH, 16);
    } else {
        TIFFSetField(pTiff, TIFFTAG_ROWSPERSTRIP, 16); // what the blocks of JPEG ask for
    }
}

Bytes Tiff(const TiffKind& kind)
{
    const TempFolder folder;
    const std::string sPath = folder.File(kind.szName);
    TIFF* const pTiff = TIFFOpen(sPath.c_str(), kind.szMode);
    if (!pTiff)
        throw std::runtime_error("can't write " + sPath);
    SetTags(pTiff, kind);
    Bytes piece(static_cast<std::size_t>(kind.bTiled ? TIFFTileSize(pTiff) : TIFFStripSize(pTiff)));
    for (std::size_t i = 0; i < piece.size(); ++i)
        piece[i] = Level(static_cast<int>(i % WIDTH), static_cast<int>(i / WIDTH));
    const auto nPieces = kind.bTiled ? TIFFNumberOfTiles(pTiff) : TIFFNumberOfStrips(pTiff);
    const auto nBytes = static_cast<tmsize_t>(piece.size());
    for (std::uint32_t i = 0; i < nPieces; ++i) {
        Bytes copy = piece; // some encoders work in the buffer
        if (kind.bTiled)
            TIFFWriteEncodedTile(pTiff, i, copy.data(), nBytes);
        else
            TIFFWriteEncodedStrip(pTiff, i, copy.data(), nBytes);
    }
    TIFFClose(pTiff);
    return ReadBytes(sPath);
}

Bytes Png(int nFormat, int nBits, bool bAlpha)
{
    wxImage image = BlockPicture(WIDTH, HEIGHT);
    if (bAlpha)
        image.InitAlpha();
    image.SetOption(wxIMAGE_OPTION_PNG_FORMAT, nFormat);
    image.SetOption(wxIMAGE_OPTION_PNG_BITDEPTH, nBits);
    return Encoded(image, wxBITMAP_TYPE_PNG);
}

constexpr std::size_t MEGABYTE = std::size_t{1} << 20;

/// A packed megabyte of zeros that may stand again and again: no piece refers to the one before.
struct PackedZeros {
    Bytes first, next;
};

PackedZeros PackZeros()
{
    Bytes zeros(MEGABYTE);
    z_stream stream{};
    if (deflateInit(&stream, Z_BEST_COMPRESSION) != Z_OK)
        throw std::runtime_error("nothing can be packed");
    PackedZeros packed;
    for (Bytes* const pPiece : {&packed.first, &packed.next}) {
        pPiece->resize(MEGABYTE);
        stream.next_in = zeros.data();
        stream.avail_in = static_cast<uInt>(zeros.size());
        stream.next_out = pPiece->data();
        stream.avail_out = static_cast<uInt>(pPiece->size());
        deflate(&stream, Z_FULL_FLUSH);
        pPiece->resize(pPiece->size() - stream.avail_out);
    }
    deflateEnd(&stream);
    return packed;
}

} // namespace

Bytes Jpeg(const JpegLayout& layout)
{
    jpeg_compress_struct info{};
    jpeg_error_mgr errors{};
    info.err = jpeg_std_error(&errors);
    jpeg_create_compress(&info);
    unsigned char* pFile = nullptr;
    unsigned long nFile = 0;
    jpeg_mem_dest(&info, &pFile, &nFile);
    info.image_width = static_cast<JDIMENSION>(layout.nWidth);
    info.image_height = static_cast<JDIMENSION>(layout.nHeight);
    info.input_components = layout.nChannels;
    info.in_color_space = layout.nChannels == 1 ? JCS_GRAYSCALE : layout.nChannels == 3 ? JCS_RGB : JCS_CMYK;
    jpeg_set_defaults(&info);
    if (layout.bProgressive)
        jpeg_simple_progression(&info);
    info.arith_code = layout.bArithmetic ? TRUE : FALSE;
    jpeg_start_compress(&info, TRUE);
    Bytes row(static_cast<std::size_t>(layout.nWidth) * static_cast<std::size_t>(layout.nChannels));
    for (int y = 0; y < layout.nHeight; ++y) {
        for (std::size_t i = 0; i < row.size(); ++i)
            row[i] = Level(static_cast<int>(i), y);
        unsigned char* pRow = row.data();
        jpeg_write_scanlines(&info, &pRow, 1);
    }
    jpeg_finish_compress(&info);
    jpeg_destroy_compress(&info);
    Bytes file(pFile, pFile + nFile);
    std::free(pFile);
    return file;
}

Bytes JpegOfManyScans(int nWidth, int nHeight, int nScans)
{
    Bytes file = Jpeg({.bProgressive = true, .nChannels = 1});
    const std::size_t nFrame = Find(file, {0xFF, 0xC2, 0, 11, 8}) + 5;
    file[nFrame] = static_cast<unsigned char>(nHeight >> 8);
    file[nFrame + 1] = static_cast<unsigned char>(nHeight);
    file[nFrame + 2] = static_cast<unsigned char>(nWidth >> 8);
    file[nFrame + 3] = static_cast<unsigned char>(nWidth);
    const Bytes scan{0xFF, 0xDA, 0, 8, 1, 1, 0, 1, 63, 0x10}; // refines all coefficients but the first
    Bytes scans;
    for (int i = 0; i < nScans; ++i)
        scans.insert(scans.end(), scan.begin(), scan.end());
    file.insert(file.end() - 2, scans.begin(), scans.end()); // before the end of the image
    return file;
}

Bytes PngOfTooMuch(int nMegabytes)
{
    const PackedZeros packed = PackZeros();
    Bytes chunk = Joined({BytesOf("IDAT"), packed.first});
    for (int i = 1; i < nMegabytes; ++i)
        Append(chunk, packed.next);

    const Bytes file = Encoded(wxImage(64, 64), wxBITMAP_TYPE_PNG);
    const auto place = [&file](std::string_view sName) {
        return file.begin() + static_cast<std::ptrdiff_t>(Find(file, BytesOf(sName)) - 4);
    };
    const auto nCheckSum = crc32(0, chunk.data(), static_cast<uInt>(chunk.size()));
    return Joined({Bytes(file.begin(), place("IDAT")), BigEndian(chunk.size() - 4), chunk,
                   BigEndian(nCheckSum), Bytes(place("IEND"), file.end())});
}

std::vector<SamplePicture> SamplePictures()
{
    const wxImage picture = BlockPicture(WIDTH, HEIGHT);
    std::vector<SamplePicture> vPictures{
        {"picture.ani", AnimatedCursor(Encoded(picture, wxBITMAP_TYPE_CUR))},
        {"picture.png", Png(wxPNG_TYPE_COLOUR, 8, false)},
        {"deep.png", Png(wxPNG_TYPE_COLOUR, 16, true)},
        {"grey.png", Png(wxPNG_TYPE_GREY, 8, false)},
        {"palette.png", Png(wxPNG_TYPE_PALETTE, 8, false)},
        {"picture.jpg", Jpeg({})},
        {"progressive.jpg", Jpeg({.bProgressive = true})},
        {"arithmetic.jpg", Jpeg({.bArithmetic = true})},
        {"grey.jpg", Jpeg({.nChannels = 1})},
        {"cmyk.jpg", Jpeg({.nChannels = 4})},
    };
    const std::pair<const char*, wxBitmapType> written[] = {
        {"picture.bmp", wxBITMAP_TYPE_BMP}, {"picture.gif", wxBITMAP_TYPE_GIF},
        {"picture.ico", wxBITMAP_TYPE_ICO}, {"picture.pnm", wxBITMAP_TYPE_PNM},
        {"picture.pcx", wxBITMAP_TYPE_PCX}, {"picture.tga", wxBITMAP_TYPE_TGA},
        {"picture.xpm", wxBITMAP_TYPE_XPM}};
    for (const auto& [szName, type] : written)
        vPictures.push_back({szName, Encoded(picture, type)});
    for (const TiffKind& kind : TIFF_KINDS)
        vPictures.push_back({kind.szName, Tiff(kind)});
    return vPictures;
}

} // namespace LS::Tests
