// Small files that would keep a decoder busy for long.
#include "tests/faults/Bombs.h"

#include "tests/image/Pictures.h"

#include <tiffio.h>
#include <wx/image.h>
#include <zlib.h>

#include <cstddef>
#include <stdexcept>

namespace LS::Tests {

namespace {

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

void AppendBigEndian(Bytes& bytes, std::size_t nNumber)
{
    for (const int nShift : {24, 16, 8, 0})
        bytes.push_back(static_cast<unsigned char>(nNumber >> nShift));
}

} // namespace

Bytes PngOfTooMuch(int nMegabytes)
{
    const PackedZeros packed = PackZeros();
    Bytes chunk{'I', 'D', 'A', 'T'};
    chunk.insert(chunk.end(), packed.first.begin(), packed.first.end());
    for (int i = 1; i < nMegabytes; ++i)
        chunk.insert(chunk.end(), packed.next.begin(), packed.next.end());

    Bytes file = Encoded(wxImage(64, 64), wxBITMAP_TYPE_PNG);
    const std::size_t nChunk = Find(file, {'I', 'D', 'A', 'T'}) - 4,
                      nEnd = Find(file, {'I', 'E', 'N', 'D'}) - 4;
    const Bytes end(file.begin() + static_cast<std::ptrdiff_t>(nEnd), file.end());
    file.resize(nChunk);
    AppendBigEndian(file, chunk.size() - 4);
    file.insert(file.end(), chunk.begin(), chunk.end());
    AppendBigEndian(file, crc32(0, chunk.data(), static_cast<uInt>(chunk.size())));
    file.insert(file.end(), end.begin(), end.end());
    return file;
}

Bytes TiffOfLargeTiles()
{
    constexpr std::uint32_t TILES = 50'000, TILE_WIDTH = 65'536, TILE_HEIGHT = 16;
    static_assert(std::size_t{TILE_WIDTH} * TILE_HEIGHT == MEGABYTE);
    const Bytes zeros(MEGABYTE);
    Bytes tile(MEGABYTE);
    uLongf nPacked = tile.size();
    compress2(tile.data(), &nPacked, zeros.data(), zeros.size(), Z_BEST_COMPRESSION);
    tile.resize(nPacked);

    constexpr std::uint32_t TAGS = 10, OFFSETS = 8 + 2 + 12 * TAGS + 4, LENGTHS = OFFSETS + 4 * TILES,
                            DATA = LENGTHS + 4 * TILES;
    const struct {
        std::uint32_t nTag, nCount, nValue;
    } tags[TAGS] = {
        {TIFFTAG_IMAGEWIDTH, 1, 16},
        {TIFFTAG_IMAGELENGTH, 1, TILES * TILE_HEIGHT},
        {TIFFTAG_BITSPERSAMPLE, 1, 8},
        {TIFFTAG_COMPRESSION, 1, COMPRESSION_ADOBE_DEFLATE},
        {TIFFTAG_PHOTOMETRIC, 1, PHOTOMETRIC_MINISBLACK},
        {TIFFTAG_SAMPLESPERPIXEL, 1, 1},
        {TIFFTAG_TILEWIDTH, 1, TILE_WIDTH},
        {TIFFTAG_TILELENGTH, 1, TILE_HEIGHT},
        {TIFFTAG_TILEOFFSETS, TILES, OFFSETS},
        {TIFFTAG_TILEBYTECOUNTS, TILES, LENGTHS},
    };
    Bytes file{'M', 'M', 0, 42, 0, 0, 0, 8, 0, TAGS};
    for (const auto& tag : tags) {
        AppendBigEndian(file, tag.nTag << 16 | TIFF_LONG);
        AppendBigEndian(file, tag.nCount);
        AppendBigEndian(file, tag.nValue);
    }
    AppendBigEndian(file, 0); // no further directory
    for (const std::size_t nElement : {std::size_t{DATA}, tile.size()})
        for (std::uint32_t i = 0; i < TILES; ++i)
            AppendBigEndian(file, nElement);
    file.insert(file.end(), tile.begin(), tile.end());
    return file;
}

} // namespace LS::Tests
