// Writes small pictures with the libraries, and by hand where none writes them.
#include "tests/faults/SamplePictures.h"

#include "tests/image/Pictures.h"
#include "tests/support/BytePieces.h"

#include <wx/imagpng.h>
#include <wx/imagtiff.h>

#include <cstdio>
#include <cstdlib>
#include <stdexcept>
#include <string_view>

#include <jpeglib.h> // wants the declarations of cstdio
#include <tiff.h>
#include <zlib.h>

namespace LS::Tests {

namespace {

constexpr int WIDTH = 40, HEIGHT = 24;

/// A picture with numbers for the library's writer of its format.
Bytes EncodedWith(std::initializer_list<std::pair<wxString, int>> options, wxBitmapType type,
                  bool bAlpha = false)
{
    wxImage image = BlockPicture(WIDTH, HEIGHT);
    if (bAlpha)
        image.InitAlpha();
    for (const auto& [sName, nValue] : options)
        image.SetOption(sName, nValue);
    return Encoded(image, type);
}

Bytes Png(int nFormat, int nBits, bool bAlpha = false)
{
    return EncodedWith({{wxIMAGE_OPTION_PNG_FORMAT, nFormat}, {wxIMAGE_OPTION_PNG_BITDEPTH, nBits}},
                       wxBITMAP_TYPE_PNG, bAlpha);
}

Bytes Tiff(int nCompression, int nBits = 8, int nSamples = 3)
{
    return EncodedWith({{wxIMAGE_OPTION_TIFF_COMPRESSION, nCompression},
                        {wxIMAGE_OPTION_TIFF_BITSPERSAMPLE, nBits},
                        {wxIMAGE_OPTION_TIFF_SAMPLESPERPIXEL, nSamples}},
                       wxBITMAP_TYPE_TIFF);
}

constexpr std::size_t MEGABYTE = std::size_t{1} << 20;

/// A megabyte of zeros as zlib packs it. Without its two bytes in front it may stand again and again.
Bytes PackedZeros()
{
    Bytes zeros(MEGABYTE), packed(MEGABYTE);
    z_stream stream{};
    if (deflateInit(&stream, Z_BEST_COMPRESSION) != Z_OK)
        throw std::runtime_error("nothing can be packed");
    stream.next_in = zeros.data();
    stream.avail_in = static_cast<uInt>(zeros.size());
    stream.next_out = packed.data();
    stream.avail_out = static_cast<uInt>(packed.size());
    deflate(&stream, Z_FULL_FLUSH);
    packed.resize(packed.size() - stream.avail_out);
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
            row[i] = static_cast<unsigned char>(5 * i + 3 * static_cast<unsigned>(y));
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
    const Bytes packed = PackedZeros(), again(packed.begin() + 2, packed.end());
    Bytes chunk = Joined({BytesOf("IDAT"), packed});
    for (int i = 1; i < nMegabytes; ++i)
        Append(chunk, again);

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
        {"picture.png", Png(wxPNG_TYPE_COLOUR, 8)},
        {"deep.png", Png(wxPNG_TYPE_COLOUR, 16, true)},
        {"grey.png", Png(wxPNG_TYPE_GREY, 8)},
        {"palette.png", Png(wxPNG_TYPE_PALETTE, 8)},
        {"picture.jpg", Jpeg({})},
        {"progressive.jpg", Jpeg({.bProgressive = true})},
        {"arithmetic.jpg", Jpeg({.bArithmetic = true})},
        {"grey.jpg", Jpeg({.nChannels = 1})},
        {"cmyk.jpg", Jpeg({.nChannels = 4})},
        {"none.tif", Tiff(COMPRESSION_NONE)},
        {"deflate.tif", Tiff(COMPRESSION_ADOBE_DEFLATE)},
        {"packbits.tif", Tiff(COMPRESSION_PACKBITS, 8, 1)},
        {"jpeg.tif", Tiff(COMPRESSION_JPEG)},
        {"fax4.tif", Tiff(COMPRESSION_CCITTFAX4, 1, 1)},
        {"tiles.tif", GreyTiff({40, 24, 64})},
        {"big.tif", GreyTiff({.nWidth = 64, .nHeight = 64, .bBig = true})},
    };
    const std::pair<const char*, wxBitmapType> written[] = {
        {"picture.bmp", wxBITMAP_TYPE_BMP}, {"picture.gif", wxBITMAP_TYPE_GIF},
        {"picture.ico", wxBITMAP_TYPE_ICO}, {"picture.pnm", wxBITMAP_TYPE_PNM},
        {"picture.pcx", wxBITMAP_TYPE_PCX}, {"picture.tga", wxBITMAP_TYPE_TGA},
        {"picture.xpm", wxBITMAP_TYPE_XPM}};
    for (const auto& [szName, type] : written)
        vPictures.push_back({szName, Encoded(picture, type)});
    return vPictures;
}

} // namespace LS::Tests
