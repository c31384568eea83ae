// Small files that would keep a decoder busy for long.
#include "tests/faults/Bombs.h"

#include "tests/image/Pictures.h"
#include "tests/support/BytePieces.h"

#include <tiffio.h>
#include <wx/image.h>
#include <zlib.h>

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string_view>

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

} // namespace

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
    for (const auto& tag : tags)
        Append(file,
               Joined({BigEndian(tag.nTag << 16 | TIFF_LONG), BigEndian(tag.nCount), BigEndian(tag.nValue)}));
    Append(file, BigEndian(0)); // no further directory
    for (const std::size_t nElement : {std::size_t{DATA}, tile.size()})
        for (std::uint32_t i = 0; i < TILES; ++i)
            Append(file, BigEndian(nElement));
    Append(file, tile);
    return file;
}

} // namespace LS::Tests
