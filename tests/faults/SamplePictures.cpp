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

/// A chunk of an interleaved bitmap.
Bytes IffChunk(std::string_view sName, const Bytes& content)
{
    return Joined({BytesOf(sName), BigEndian(content.size()), content});
}

/// An interleaved bitmap of one plane and two colours, unpacked.
Bytes InterleavedBitmap()
{
    const Bytes header{0, 16, 0, 8, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 1, 1, 0, 16, 0, 8};
    return IffChunk(
        "FORM", Joined({BytesOf("ILBM"), IffChunk("BMHD", header),
                        IffChunk("CMAP", {10, 20, 30, 200, 210, 220}), IffChunk("BODY", Bytes(16, 0x5A))}));
}

struct TiffKind {
    const char* szName;
    std::uint16_t nCompression, nBits, nSamples, nPhotometric;
    bool bTiled = false;
    bool bPlanes = false; // each channel by itself
    const char* szMode = "w";
};

constexpr TiffKind TIFF_KINDS[] = {
    {"none.tif", COMPRESSION_NONE, 8, 3, PHOTOMETRIC_RGB},
    {"big-endian.tif", COMPRESSION_NONE, 16, 3, PHOTOMETRIC_RGB, false, false, "wb"},
    {"lzw.tif", COMPRESSION_LZW, 8, 3, PHOTOMETRIC_RGB},
    {"deflate.tif", COMPRESSION_ADOBE_DEFLATE, 8, 4, PHOTOMETRIC_RGB},
    {"packbits.tif", COMPRESSION_PACKBITS, 8, 1, PHOTOMETRIC_MINISBLACK},
    {"jpeg.tif", COMPRESSION_JPEG, 8, 3, PHOTOMETRIC_YCBCR},
    {"fax3.tif", COMPRESSION_CCITTFAX3, 1, 1, PHOTOMETRIC_MINISWHITE},
    {"fax4.tif", COMPRESSION_CCITTFAX4, 1, 1, PHOTOMETRIC_MINISWHITE},
    {"tiles.tif", COMPRESSION_LZW, 8, 3, PHOTOMETRIC_RGB, true},
    {"planes.tif", COMPRESSION_LZW, 8, 3, PHOTOMETRIC_RGB, false, true},
    {"palette.tif", COMPRESSION_NONE, 4, 1, PHOTOMETRIC_PALETTE},
    {"cmyk.tif", COMPRESSION_NONE, 8, 4, PHOTOMETRIC_SEPARATED},
    {"big.tif", COMPRESSION_LZW, 8, 3, PHOTOMETRIC_RGB, false, false, "w8"},
};

void SetTags(TIFF* pTiff, const TiffKind& kind)
{
    TIFFSetField(pTiff, TIFFTAG_IMAGEWIDTH, WIDTH);
    TIFFSetField(pTiff, TIFFTAG_IMAGELENGTH, HEIGHT);
    TIFFSetField(pTiff, TIFFTAG_BITSPERSAMPLE, kind.nBits);
    TIFFSetField(pTiff, TIFFTAG_SAMPLESPERPIXEL, kind.nSamples);
    TIFFSetField(pTiff, TIFFTAG_PHOTOMETRIC, kind.nPhotometric);
    TIFFSetField(pTiff, TIFFTAG_PLANARCONFIG, kind.bPlanes ? PLANARCONFIG_SEPARATE : PLANARCONFIG_CONTIG);
    TIFFSetField(pTiff, TIFFTAG_COMPRESSION, kind.nCompression);
    if (kind.nCompression == COMPRESSION_JPEG)
        TIFFSetField(pTiff, TIFFTAG_JPEGCOLORMODE, JPEGCOLORMODE_RGB);
    if (kind.nPhotometric == PHOTOMETRIC_PALETTE) {
        std::uint16_t table[16];
        for (std::uint16_t i = 0; i < 16; ++i)
            table[i] = static_cast<std::uint16_t>(4000 * i);
        TIFFSetField(pTiff, TIFFTAG_COLORMAP, table, table, table);
    }
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

wxImage Picture()
{
    wxImage image(WIDTH, HEIGHT);
    for (int y = 0; y < HEIGHT; ++y)
        for (int x = 0; x < WIDTH; ++x)
            image.SetRGB(x, y, Level(x, y), Level(y, x), Level(x, x));
    return image;
}

Bytes Png(int nFormat, int nBits, bool bAlpha)
{
    wxImage image = nFormat == wxPNG_TYPE_PALETTE ? BlockPicture(WIDTH, HEIGHT) : Picture();
    if (bAlpha)
        image.InitAlpha();
    image.SetOption(wxIMAGE_OPTION_PNG_FORMAT, nFormat);
    image.SetOption(wxIMAGE_OPTION_PNG_BITDEPTH, nBits);
    return Encoded(image, wxBITMAP_TYPE_PNG);
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
    info.restart_interval = static_cast<unsigned>(layout.nRestart);
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

std::vector<SamplePicture> SamplePictures()
{
    const wxImage picture = Picture(), blocks = BlockPicture(WIDTH, HEIGHT);
    std::vector<SamplePicture> vPictures{
        {"picture.bmp", Encoded(picture, wxBITMAP_TYPE_BMP)},
        {"picture.gif", Encoded(blocks, wxBITMAP_TYPE_GIF)},
        {"picture.ico", Encoded(picture, wxBITMAP_TYPE_ICO)},
        {"picture.cur", Encoded(picture, wxBITMAP_TYPE_CUR)},
        {"picture.pnm", Encoded(picture, wxBITMAP_TYPE_PNM)},
        {"picture.pcx", Encoded(picture, wxBITMAP_TYPE_PCX)},
        {"picture.tga", Encoded(picture, wxBITMAP_TYPE_TGA)},
        {"picture.xpm", Encoded(blocks, wxBITMAP_TYPE_XPM)},
        {"picture.iff", InterleavedBitmap()},
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
        {"restart.jpg", Jpeg({.bProgressive = true, .nRestart = 2})},
    };
    for (const TiffKind& kind : TIFF_KINDS)
        vPictures.push_back({kind.szName, Tiff(kind)});
    return vPictures;
}

} // namespace LS::Tests
