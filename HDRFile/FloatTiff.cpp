// Writes a float cache file as a floating point TIFF through libtiff.
#include "HDRFile/FloatTiff.h"

#include "HDRFile/FloatCacheReader.h"
#include "Util/FailureLog.h"
#include "Util/RegularFile.h"

#include <fcntl.h>
#include <tiffio.h>

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <iterator>
#include <memory>
#include <new>
#include <span>
#include <string>

using LS::Util::RegularFile;

namespace {

std::int32_t g_nLastPercent = -1;

struct OptionsDeleter {
    void operator()(TIFFOpenOptions* pOptions) const { TIFFOpenOptionsFree(pOptions); }
};

/// Frees the handle but leaves the descriptor open: TIFFClose would close it and tell nobody of an error.
struct TiffDeleter {
    void operator()(TIFF* pTiff) const { TIFFCleanup(pTiff); }
};
using TiffFile = std::unique_ptr<TIFF, TiffDeleter>;

/// Keeps the library's first error, which names the cause; the later ones are its consequences. It says where
/// it failed but not why, so the system's reason follows if there is one.
int KeepFirstError(TIFF*, void* pText, const char*, const char* szFormat, va_list arguments)
try {
    const int nError = errno;
    auto& sText = *static_cast<std::string*>(pText);
    char szMessage[512] = "";
    std::vsnprintf(szMessage, sizeof szMessage, szFormat, arguments);
    if (sText.empty()) {
        sText = szMessage;
        if (nError != 0)
            sText += ": " + LS::Util::SystemError(nError);
    }
    return 1; // dealt with: nothing goes to the standard error stream
} catch (const std::bad_alloc&) {
    *static_cast<std::string*>(pText) = "out of memory"; // short enough to need none
    return 1; // the library calls this from its clean-up, too, which no exception may leave
}

int DropWarning(TIFF*, void*, const char*, const char*, va_list)
{
    return 1;
}

/// @param sError  receives the library's first error as long as the handle lives
TiffFile OpenTiff(const RegularFile& file, std::string& sError)
{
    const std::unique_ptr<TIFFOpenOptions, OptionsDeleter> pOptions(TIFFOpenOptionsAlloc());
    if (!pOptions)
        return nullptr;
    TIFFOpenOptionsSetErrorHandlerExtR(pOptions.get(), KeepFirstError, &sError);
    TIFFOpenOptionsSetWarningHandlerExtR(pOptions.get(), DropWarning, nullptr);
    errno = 0;
    return TiffFile(TIFFFdOpenExt(file.Descriptor(), file.Path().c_str(), "w", pOptions.get()));
}

/// @return false if one can't be set, for want of memory; the picture would lack it
bool SetTags(TIFF* pTiff, std::int32_t nWidth, std::int32_t nHeight)
{
    const struct {
        std::uint32_t nTag;
        std::int32_t nValue;
    } tags[] = {
        {TIFFTAG_IMAGEWIDTH, nWidth},
        {TIFFTAG_IMAGELENGTH, nHeight},
        {TIFFTAG_COMPRESSION, COMPRESSION_LZW},
        {TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG},
        {TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_RGB},
        {TIFFTAG_BITSPERSAMPLE, 32},
        {TIFFTAG_SAMPLESPERPIXEL, 3},
        {TIFFTAG_SAMPLEFORMAT, SAMPLEFORMAT_IEEEFP},
        {TIFFTAG_ROWSPERSTRIP, 1},
    };
    return std::all_of(std::begin(tags), std::end(tags),
                       [pTiff](const auto& tag) { return TIFFSetField(pTiff, tag.nTag, tag.nValue) == 1; });
}

bool WriteStrip(TIFF* pTiff, std::int32_t y, std::span<const float> fRow)
{
    errno = 0;
    // The library takes a pointer to bytes that it might swap; it does so for the other byte order only.
    return TIFFWriteEncodedStrip(pTiff, static_cast<std::uint32_t>(y), const_cast<float*>(fRow.data()),
                                 static_cast<tmsize_t>(fRow.size_bytes())) != -1;
}

bool LogTiffError(const RegularFile& file, const std::string& sError)
{
    LS::Util::LogFailure("save", file.Path(), sError.empty() ? "the TIFF library gives no reason" : sError);
    return false;
}

bool WritePicture(const RegularFile& file, const char* HDRDataFile, std::int32_t nWidth, std::int32_t nHeight,
                  ProgbarSetter* pProgress)
{
    std::string sError; // outlives the handle, whose end may report one more
    const TiffFile pTiff = OpenTiff(file, sError);
    if (!pTiff)
        return LogTiffError(file, sError);
    if (!SetTags(pTiff.get(), nWidth, nHeight)) {
        TIFFSetMode(pTiff.get(),
                    O_RDONLY); // else the library crashes at the directory that it writes at its end
        return LogTiffError(file, sError);
    }

    const auto writeRow = [&](std::int32_t y, std::span<const float> fRow) {
        return WriteStrip(pTiff.get(), y, fRow) || LogTiffError(file, sError);
    };
    if (!StreamRows(HDRDataFile, nWidth, nHeight, pProgress, g_nLastPercent, writeRow))
        return false;
    errno = 0;
    // The directory: without it the file is unreadable.
    return TIFFFlush(pTiff.get()) == 1 || LogTiffError(file, sError);
}

} // namespace

bool WriteFloatTiffFile(const char* HDRDataFile, const char* fileName, std::int32_t nWidth,
                        std::int32_t nHeight, ProgbarSetter* pProgress)
{
    if (!CheckWriterArguments(HDRDataFile, fileName, nWidth, nHeight))
        return false;
    const auto save = [&] {
        RegularFile file("save", fileName, O_RDWR | O_CREAT | O_TRUNC);
        return file.IsOpen() && WritePicture(file, HDRDataFile, nWidth, nHeight, pProgress) && file.Close();
    };
    if (!CatchAndLog(fileName, save))
        return false;
    Report(pProgress, 100);
    return true;
}
