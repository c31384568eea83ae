// What the first bytes of a picture file tell before anything is decoded.
#include "image/ImageHeader.h"

#include <sys/stat.h>
#include <tiffio.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdarg>
#include <cstddef>
#include <cstring>
#include <limits>
#include <memory>
#include <string_view>

using namespace std::string_view_literals;

namespace {

constexpr off_t WHOLE_FILE = std::numeric_limits<off_t>::max();

/// The bytes of a file in order, whatever its reading position.
class ByteReader {
public:
    static constexpr int END = -1;

    /// @param nMost  so far it reads, up to the next 4 KB
    explicit ByteReader(int nFile, off_t nMost = WHOLE_FILE) : m_nFile(nFile), m_nMost(nMost) {}

    int Next()
    {
        if (m_nNext == m_nFilled && !Fill())
            return END;
        return m_buffer[m_nNext++];
    }

    /// Two bytes, the high one first.
    int NextWord()
    {
        const int nHigh = Next();
        const int nLow = Next();
        return nHigh == END || nLow == END ? END : nHigh << 8 | nLow;
    }

    /// Four bytes, the high one first.
    std::int64_t NextLong()
    {
        const int nHigh = NextWord();
        const int nLow = NextWord();
        return nHigh == END || nLow == END ? END : std::int64_t{nHigh} << 16 | nLow;
    }

    void Skip(std::size_t nBytes)
    {
        const std::size_t nBuffered = std::min(nBytes, m_nFilled - m_nNext);
        m_nNext += nBuffered;
        m_nOffset += static_cast<off_t>(nBytes - nBuffered);
    }

private:
    bool Fill()
    {
        const ssize_t nRead =
            m_nOffset < m_nMost ? ::pread(m_nFile, m_buffer.data(), m_buffer.size(), m_nOffset) : 0;
        m_nNext = 0;
        m_nFilled = nRead > 0 ? static_cast<std::size_t>(nRead) : 0;
        m_nOffset += static_cast<off_t>(m_nFilled);
        return m_nFilled > 0;
    }

    int m_nFile;
    off_t m_nMost;
    off_t m_nOffset = 0; // of the byte behind the buffer
    std::array<unsigned char, 4096> m_buffer{};
    std::size_t m_nNext = 0;
    std::size_t m_nFilled = 0;
};

constexpr std::uint64_t Product(int nWidth, int nHeight)
{
    return nWidth < 0 || nHeight < 0 ? 0
                                     : static_cast<std::uint64_t>(nWidth) * static_cast<unsigned>(nHeight);
}

/// Markers of JPEG, ITU-T T.81, table B.1.
namespace Marker {
constexpr int START_OF_FRAME = 0xC0; // to 0xCF, but for the three that follow
constexpr int HUFFMAN_TABLES = 0xC4;
constexpr int RESERVED = 0xC8;
constexpr int ARITHMETIC_CONDITIONING = 0xCC;
constexpr int RESTART = 0xD0; // to 0xD7
constexpr int START_OF_IMAGE = 0xD8;
constexpr int END_OF_IMAGE = 0xD9;
constexpr int START_OF_SCAN = 0xDA;
} // namespace Marker

bool IsStartOfFrame(int nMarker)
{
    return nMarker >= Marker::START_OF_FRAME && nMarker <= 0xCF && nMarker != Marker::HUFFMAN_TABLES &&
           nMarker != Marker::RESERVED && nMarker != Marker::ARITHMETIC_CONDITIONING;
}

/// Whether length and content follow. Decoders refuse what stands below the frames, or look for the next
/// marker right behind it.
bool HasSegment(int nMarker)
{
    return nMarker >= Marker::START_OF_FRAME &&
           (nMarker < Marker::RESTART || nMarker > Marker::START_OF_IMAGE);
}

bool IsProgressive(int nFrame)
{
    return (nFrame & 3) == 2; // C2, C6, CA and CE
}

/// The next marker. As decoders do, this passes over stray bytes before it, fill bytes, and stuffed zeros.
int NextMarker(ByteReader& bytes)
{
    int nByte = bytes.Next();
    for (;;) {
        while (nByte != 0xFF && nByte != ByteReader::END)
            nByte = bytes.Next();
        while (nByte == 0xFF)
            nByte = bytes.Next();
        if (nByte != 0)
            return nByte;
    }
}

/// Passes over the rest of a segment of which some bytes are read already. @param nLength  counts itself
void SkipSegment(ByteReader& bytes, int nLength, int nRead = 2)
{
    bytes.Skip(static_cast<std::size_t>(std::max(nLength - nRead, 0)));
}

/// What a JPEG file tells before its first scan.
struct JpegFrame {
    int nMarker = 0; // 0: there is none
    int nWidth = 0, nHeight = 0, nChannels = 0;
};

/// Reads up to behind the frame's marker segment.
JpegFrame ReadFrame(ByteReader& bytes)
{
    for (;;) {
        const int nMarker = NextMarker(bytes);
        if (nMarker == ByteReader::END || nMarker == Marker::END_OF_IMAGE || nMarker == Marker::START_OF_SCAN)
            return {};
        if (!HasSegment(nMarker))
            continue;
        const int nLength = bytes.NextWord();
        if (IsStartOfFrame(nMarker)) {
            bytes.Skip(1); // bits of a sample
            JpegFrame frame{nMarker};
            frame.nHeight = bytes.NextWord();
            frame.nWidth = bytes.NextWord();
            frame.nChannels = bytes.Next();
            SkipSegment(bytes, nLength, 8);
            return frame;
        }
        SkipSegment(bytes, nLength);
    }
}

std::uint64_t JpegPixels(int nFile)
{
    ByteReader bytes(nFile, off_t{64} << 20);
    const JpegFrame frame = ReadFrame(bytes);
    return Product(frame.nWidth, frame.nHeight);
}

int JpegScans(int nFile, int nMost)
{
    ByteReader bytes(nFile);
    const JpegFrame frame = ReadFrame(bytes);
    for (int nScans = 0; nScans <= nMost;) {
        const int nMarker = NextMarker(bytes);
        if (nMarker == ByteReader::END || nMarker == Marker::END_OF_IMAGE)
            return std::max(nScans, 1);
        if (!HasSegment(nMarker))
            continue;
        const int nLength = bytes.NextWord();
        if (nMarker != Marker::START_OF_SCAN) {
            SkipSegment(bytes, nLength);
            continue;
        }
        ++nScans;
        // A first scan of all channels is the whole picture, and the decoder looks no further.
        if (nScans == 1 && bytes.Next() >= frame.nChannels && !IsProgressive(frame.nMarker))
            return 1;
        SkipSegment(bytes, nLength, nScans == 1 ? 3 : 2);
    }
    return nMost + 1;
}

std::uint64_t PngPixels(int nFile)
{
    ByteReader bytes(nFile);
    bytes.Skip(8 + 4 + 4); // signature, then length and name of the first chunk, which is always the header
    const std::int64_t nWidth = bytes.NextLong();
    const std::int64_t nHeight = bytes.NextLong();
    return nWidth < 0 || nHeight < 0
               ? 0
               : static_cast<std::uint64_t>(nWidth) * static_cast<std::uint64_t>(nHeight);
}

bool PngHoldsItsChunks(int nFile)
{
    constexpr int MOST_CHUNKS = 1 << 20; // of 8 KB they hold more than the largest picture
    constexpr std::int64_t IEND = 0x49454E44;
    ByteReader bytes(nFile);
    bytes.Skip(8); // signature
    for (int i = 0; i < MOST_CHUNKS; ++i) {
        const std::int64_t nLength = bytes.NextLong();
        const std::int64_t nName = bytes.NextLong();
        if (nName == ByteReader::END)
            return false;
        bytes.Skip(static_cast<std::size_t>(nLength));
        if (bytes.NextLong() == ByteReader::END) // the check sum
            return false;
        if (nName == IEND)
            return true;
    }
    return false;
}

struct TiffCloser {
    void operator()(TIFF* pTiff) const noexcept { TIFFClose(pTiff); }
};
using TiffFile = std::unique_ptr<TIFF, TiffCloser>;

using TiffOptions = std::unique_ptr<TIFFOpenOptions, decltype(&TIFFOpenOptionsFree)>;

/// Keeps the library's messages about one file to itself.
TiffOptions SilentOptions()
{
    constexpr auto IGNORE = [](TIFF*, void*, const char*, const char*, va_list) { return 1; };
    TiffOptions pOptions(TIFFOpenOptionsAlloc(), TIFFOpenOptionsFree);
    if (pOptions) {
        TIFFOpenOptionsSetErrorHandlerExtR(pOptions.get(), IGNORE, nullptr);
        TIFFOpenOptionsSetWarningHandlerExtR(pOptions.get(), IGNORE, nullptr);
    }
    return pOptions;
}

/// The first directory of a file; null if the library finds none. Says nothing, since the decoder meets the
/// same faults. Moves the reading position.
TiffFile OpenTiff(int nFile)
{
    const int nOwn = ::dup(nFile); // shares the reading position
    ::lseek(nFile, 0, SEEK_SET);
    // "m": without a memory mapping, which would fault where the file is cut meanwhile.
    TiffFile pTiff(nOwn < 0 ? nullptr : TIFFFdOpenExt(nOwn, "photograph", "rm", SilentOptions().get()));
    if (!pTiff && nOwn >= 0)
        ::close(nOwn);
    return pTiff;
}

std::uint32_t Tag(TIFF* pTiff, std::uint32_t nTag)
{
    std::uint32_t nValue = 0;
    TIFFGetField(pTiff, nTag, &nValue);
    return nValue;
}

/// One of those that have 16 bits and a default.
std::uint16_t ShortTag(TIFF* pTiff, std::uint32_t nTag)
{
    std::uint16_t nValue = 0;
    TIFFGetFieldDefaulted(pTiff, nTag, &nValue);
    return nValue;
}

std::uint64_t PicturePixels(TIFF* pTiff)
{
    return std::uint64_t{Tag(pTiff, TIFFTAG_IMAGEWIDTH)} * Tag(pTiff, TIFFTAG_IMAGELENGTH);
}

std::uint64_t TilePixels(TIFF* pTiff)
{
    return std::uint64_t{Tag(pTiff, TIFFTAG_TILEWIDTH)} * Tag(pTiff, TIFFTAG_TILELENGTH);
}

std::uint64_t TiffPixels(int nFile)
{
    std::uint64_t nPixels = 0;
    if (const TiffFile pTiff = OpenTiff(nFile))
        nPixels = std::max(PicturePixels(pTiff.get()), TilePixels(pTiff.get()));
    ::lseek(nFile, 0, SEEK_SET);
    return nPixels;
}

bool IsUsualCoding(std::uint16_t nCompression)
{
    switch (nCompression) {
    case COMPRESSION_NONE:
    case COMPRESSION_LZW:
    case COMPRESSION_PACKBITS:
    case COMPRESSION_DEFLATE:
    case COMPRESSION_ADOBE_DEFLATE:
        return true;
    default:
        return false;
    }
}

bool HasUsualLayout(TIFF* pTiff)
{
    constexpr std::uint64_t MOST_OVERHANG = std::uint64_t{64} << 20; // pixels of tiles beyond the picture
    const std::uint64_t nTiled = TIFFIsTiled(pTiff) ? TIFFNumberOfTiles(pTiff) * TilePixels(pTiff) : 0;
    return IsUsualCoding(ShortTag(pTiff, TIFFTAG_COMPRESSION)) &&
           ShortTag(pTiff, TIFFTAG_SAMPLESPERPIXEL) <= 4 && ShortTag(pTiff, TIFFTAG_BITSPERSAMPLE) <= 16 &&
           nTiled <= PicturePixels(pTiff) + MOST_OVERHANG;
}

bool TiffHasUsualLayout(int nFile)
{
    bool bUsual = true; // without a directory nothing is decoded
    if (const TiffFile pTiff = OpenTiff(nFile))
        bUsual = HasUsualLayout(pTiff.get());
    ::lseek(nFile, 0, SEEK_SET);
    return bUsual;
}

} // namespace

PictureFormat FormatOf(int nFile)
{
    std::array<char, 8> head{};
    const ssize_t nRead = ::pread(nFile, head.data(), head.size(), 0);
    const std::string_view sHead(head.data(), nRead > 0 ? static_cast<std::size_t>(nRead) : 0);

    if (sHead.starts_with("\xFF\xD8"sv))
        return PictureFormat::Jpeg;
    if (sHead.starts_with("\x89PNG\r\n\x1A\n"sv))
        return PictureFormat::Png;
    // The number behind the byte order is 42, or 43 in files with 64-bit offsets.
    for (const std::string_view sSignature : {"II*\0"sv, "MM\0*"sv, "II+\0"sv, "MM\0+"sv})
        if (sHead.starts_with(sSignature))
            return PictureFormat::Tiff;
    return PictureFormat::Other;
}

std::uint64_t FileBytes(int nFile)
{
    struct stat status {};
    return ::fstat(nFile, &status) == 0 ? static_cast<std::uint64_t>(status.st_size) : 0;
}

bool IsOversized(std::uint64_t nFileBytes, PictureFormat format)
{
    constexpr std::uint64_t MOST = std::uint64_t{128} << 20;
    return format != PictureFormat::Tiff && nFileBytes > MOST;
}

std::uint64_t PixelsAsked(int nFile, PictureFormat format)
{
    switch (format) {
    case PictureFormat::Jpeg:
        return JpegPixels(nFile);
    case PictureFormat::Png:
        return PngPixels(nFile);
    case PictureFormat::Tiff:
        return TiffPixels(nFile);
    case PictureFormat::Other:
        break;
    }
    return 0;
}

int Scans(int nFile, PictureFormat format, int nMost)
{
    return format == PictureFormat::Jpeg ? JpegScans(nFile, nMost) : 1;
}

bool HoldsItsChunks(int nFile, PictureFormat format)
{
    return format != PictureFormat::Png || PngHoldsItsChunks(nFile);
}

bool HasUsualLayout(int nFile, PictureFormat format)
{
    return format != PictureFormat::Tiff || TiffHasUsualLayout(nFile);
}
