// Scanline output by libtiff.
#include "image/tiff.h"

#include "Util/FailureLog.h"
#include "image/filter.h"

#include <algorithm>
#include <array>
#include <cstdarg>
#include <cstdio>
#include <memory>
#include <new>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <tiffio.h>
#include <unistd.h>

using LS::Util::SystemError;

namespace {

struct OptionsDeleter {
    void operator()(TIFFOpenOptions* pOptions) const noexcept { TIFFOpenOptionsFree(pOptions); }
};

TiffMetadata::Compression CompressionFor(unsigned nArgument)
{
    switch (nArgument) {
    case 0:
        return {COMPRESSION_NONE, 0};
    case 1:
        return {COMPRESSION_DEFLATE, 0};
    case 3:
        return {COMPRESSION_LZW, PREDICTOR_HORIZONTAL};
    case 4:
        return {COMPRESSION_JPEG, 0};
    default:
        return {COMPRESSION_PACKBITS, 0};
    }
}

/// Three samples make a depth that three divides.
std::uint16_t SamplesPerPixel(std::int32_t nBitsPerPixel)
{
    return nBitsPerPixel % 3 == 0 ? 3 : 4;
}

TiffMetadata MetadataOf(const RawImage& raw, unsigned nCompression)
{
    TiffMetadata metadata{};
    metadata.imageWidth = raw.width;
    metadata.imageHeight = raw.height;
    metadata.xPixelsPerResolution = 300.0F;
    metadata.yPixelsPerResolution = 300.0F;
    metadata.resolutionUnits = RESUNIT_INCH;
    metadata.samplesPerPixel = SamplesPerPixel(raw.bitsPerPixel);
    metadata.bitsPerSample = static_cast<std::uint16_t>(raw.bitsPerPixel / metadata.samplesPerPixel);
    metadata.bytesPerLine = raw.bytesPerLine;
    metadata.rowsPerStrip = 1;
    metadata.compression = CompressionFor(nCompression);
    metadata.imageNumber = 101;
    metadata.imageTotalNumber = 0;
    metadata.bitsPerPixel = raw.bitsPerPixel;
    return metadata;
}

/// A file open for one picture. libtiff's own closing function tells nobody about an error, so the descriptor
/// and the end of the file are handled here.
class TiffFile {
public:
    explicit TiffFile(const char* szFile);
    TiffFile(const TiffFile&) = delete;
    TiffFile& operator=(const TiffFile&) = delete;
    ~TiffFile() { Release(); }

    bool IsOpen() const { return m_pTiff != nullptr; }
    bool SetTags(const TiffMetadata& metadata);
    bool WriteRow(unsigned char* pRow, std::int32_t y);
    bool Finish(); ///< writes what is left and closes the file
    const std::string& Reason() const { return m_sReason; }

private:
    static int KeepError(TIFF*, void* pThis, const char*, const char* szFormat, va_list arguments);
    static int DropWarning(TIFF*, void*, const char*, const char*, va_list) { return 1; }
    void OpenDescriptor(const char* szFile);
    bool Release();

    int m_nFile = -1;
    TIFF* m_pTiff = nullptr;
    std::string m_sReason;
};

TiffFile::TiffFile(const char* szFile)
{
    OpenDescriptor(szFile);
    if (m_nFile < 0) {
        ReportError("Unable to create output file [%s]", szFile);
        return;
    }
    const std::unique_ptr<TIFFOpenOptions, OptionsDeleter> pOptions(TIFFOpenOptionsAlloc());
    if (!pOptions) {
        ReportError("Not enough memory");
        m_sReason = "no memory";
        return;
    }
    TIFFOpenOptionsSetErrorHandlerExtR(pOptions.get(), KeepError, this);
    // The one warning that comes is about the code of the Deflate compression, which is meant.
    TIFFOpenOptionsSetWarningHandlerExtR(pOptions.get(), DropWarning, nullptr);
    m_pTiff = TIFFFdOpenExt(m_nFile, szFile, "w", pOptions.get());
    if (!m_pTiff)
        ReportError("Unable to create output file [%s]", szFile);
}

/// Empties the file only when it is known to be one: a pipe would block, a device would be written to.
void TiffFile::OpenDescriptor(const char* szFile)
{
    m_nFile = open(szFile, O_RDWR | O_CREAT | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, 0666);
    struct stat status = {};
    const bool bKnown = m_nFile >= 0 && fstat(m_nFile, &status) == 0;
    if (bKnown && !S_ISREG(status.st_mode))
        m_sReason = "not a regular file";
    else if (!bKnown || ftruncate(m_nFile, 0) != 0)
        m_sReason = SystemError();
    if (!m_sReason.empty())
        Release();
}

/// The first error of a file is the one that explains the others.
int TiffFile::KeepError(TIFF*, void* pThis, const char*, const char* szFormat, va_list arguments)
try {
    std::string& sReason = static_cast<TiffFile*>(pThis)->m_sReason;
    std::array<char, 256> szText{};
    if (sReason.empty() && std::vsnprintf(szText.data(), szText.size(), szFormat, arguments) > 0)
        sReason = szText.data();
    return 1; // handled: no message of the library's own
} catch (const std::bad_alloc&) {
    static_cast<TiffFile*>(pThis)->m_sReason = "out of memory"; // short enough to need none
    return 1; // the library calls this from its clean-up, too, which no exception may leave
}

bool TiffFile::SetTags(const TiffMetadata& m)
{
    const bool bFloat = m.bitsPerSample == 32;
    const bool bPredictor = m.compression.type == COMPRESSION_LZW;
    return TIFFSetField(m_pTiff, TIFFTAG_IMAGEWIDTH, m.imageWidth) &&
           TIFFSetField(m_pTiff, TIFFTAG_IMAGELENGTH, m.imageHeight) &&
           TIFFSetField(m_pTiff, TIFFTAG_BITSPERSAMPLE, m.bitsPerSample) &&
           TIFFSetField(m_pTiff, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_RGB) &&
           TIFFSetField(m_pTiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG) &&
           TIFFSetField(m_pTiff, TIFFTAG_SAMPLESPERPIXEL, m.samplesPerPixel) &&
           TIFFSetField(m_pTiff, TIFFTAG_COMPRESSION, m.compression.type) &&
           TIFFSetField(m_pTiff, TIFFTAG_ORIENTATION, ORIENTATION_TOPLEFT) &&
           TIFFSetField(m_pTiff, TIFFTAG_ROWSPERSTRIP, m.rowsPerStrip) &&
           TIFFSetField(m_pTiff, TIFFTAG_RESOLUTIONUNIT, m.resolutionUnits) &&
           TIFFSetField(m_pTiff, TIFFTAG_XRESOLUTION, m.xPixelsPerResolution) &&
           TIFFSetField(m_pTiff, TIFFTAG_YRESOLUTION, m.yPixelsPerResolution) &&
           TIFFSetField(m_pTiff, TIFFTAG_PAGENUMBER, m.imageNumber, m.imageTotalNumber) &&
           (!bFloat || TIFFSetField(m_pTiff, TIFFTAG_SAMPLEFORMAT, SAMPLEFORMAT_IEEEFP)) &&
           (!bPredictor || TIFFSetField(m_pTiff, TIFFTAG_PREDICTOR, m.compression.predictor));
}

bool TiffFile::WriteRow(unsigned char* pRow, std::int32_t y)
{
    return TIFFWriteScanline(m_pTiff, pRow, static_cast<std::uint32_t>(y), 0) == 1;
}

bool TiffFile::Finish()
{
    const bool bWritten = TIFFWriteDirectory(m_pTiff) == 1;
    return Release() && bWritten && m_sReason.empty();
}

bool TiffFile::Release()
{
    if (m_pTiff)
        TIFFCleanup(std::exchange(m_pTiff, nullptr));
    if (m_nFile < 0 || close(std::exchange(m_nFile, -1)) == 0)
        return true;
    if (m_sReason.empty())
        m_sReason = SystemError();
    return false;
}

void DeleteReadableFile(const char* szFile)
{
    const int nFile = open(szFile, O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (nFile < 0)
        return;
    struct stat status = {};
    const bool bRegular = fstat(nFile, &status) == 0 && S_ISREG(status.st_mode);
    close(nFile);
    if (bRegular)
        unlink(szFile);
}

bool WriteRows(TiffFile& file, const RawImage& raw)
{
    for (std::int32_t y = 0; y < raw.height; ++y)
        if (!file.WriteRow(RawRow(raw, y), y))
            return false;
    return file.Finish();
}

/// @return the words for the error stream; null on success
const char* WriteFile(RawImage& raw, const char* szFile, unsigned nCompression, bool bSixteenBit,
                      std::string& sReason)
{
    TiffFile file(szFile);
    const char* szFailure = "P:image file open failed";
    if (file.IsOpen()) {
        ArgbToRgbaRows(raw);
        if (raw.bitsPerPixel >= 48)
            bSixteenBit ? EightToSixteenBit(raw) : SixteenToEightBit(raw);
        // Filled only now, so that the tags say what the rows hold after a change of depth.
        if (file.SetTags(MetadataOf(raw, nCompression)))
            szFailure = WriteRows(file, raw) ? nullptr : "P:write image failed";
    }
    sReason = file.Reason().empty() ? "no reason given by the TIFF library" : file.Reason();
    return szFailure;
}

bool IsPicture(const RawImage& raw)
{
    constexpr std::array depths{24, 32, 48, 64, 96, 128};
    const bool bDepth = std::find(depths.begin(), depths.end(), raw.bitsPerPixel) != depths.end();
    return bDepth && raw.data && raw.width > 0 && raw.height > 0;
}

} // namespace

int WriteLdrTiff(RawImage& raw, const char* fileName, unsigned compression, bool sixteenBit,
                 std::string* psReason)
{
    std::string sReason = "no name, or no picture";
    if (fileName && IsPicture(raw)) {
        const char* const szFailure = WriteFile(raw, fileName, compression, sixteenBit, sReason);
        if (!szFailure)
            return 1;
        std::fprintf(stderr, "%s\n", szFailure);
        DeleteReadableFile(fileName);
    }
    if (psReason)
        *psReason = sReason;
    else
        LS::Util::LogFailure("save", fileName ? fileName : "", sReason);
    return -1;
}

void ReportError(const char*, ...) {}
