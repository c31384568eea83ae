// Writes a float cache file as a Radiance RGBE picture.
#include "HDRFile/Radiance.h"

#include "HDRFile/FloatCacheReader.h"
#include "HDRFile/PictureStream.h"
#include "HDRFile/Rgbe.h"
#include "Util/FailureLog.h"

#include <exception>

namespace {

std::int32_t g_nLastPercent = -1;

bool LogWriteError(const char* fileName)
{
    LS::Util::LogFailure("save", fileName, LS::Util::SystemError());
    return false;
}

bool WritePicture(const char* HDRDataFile, const char* fileName, std::int32_t nWidth, std::int32_t nHeight,
                  ProgbarSetter* pProgress)
{
    PictureStream picture(fileName);
    if (!picture.IsOpen())
        return false;
    if (WriteRgbeHeader(picture.File(), nWidth, nHeight, nullptr) < 0)
        return LogWriteError(fileName);

    FloatCacheReader source(HDRDataFile, nWidth);
    if (!source.IsOpen())
        return false;
    for (std::int32_t y = 0; y < nHeight; ++y) {
        if (!source.ReadRow())
            return false;
        if (WriteRgbeScanlines(picture.File(), source.Row().data(), nWidth, 1) < 0)
            return LogWriteError(fileName);
        ReportRow(pProgress, y, nHeight, g_nLastPercent);
    }
    return picture.Close();
}

} // namespace

bool WriteRadianceFile(const char* HDRDataFile, const char* fileName, std::int32_t nWidth,
                       std::int32_t nHeight, ProgbarSetter* pProgress)
{
    if (!CheckWriterArguments(HDRDataFile, fileName, nWidth, nHeight))
        return false;
    try {
        if (!WritePicture(HDRDataFile, fileName, nWidth, nHeight, pProgress))
            return false;
    } catch (const std::exception& e) {
        LS::Util::LogFailure("save", fileName, e.what());
        return false;
    }
    Report(pProgress, 100);
    return true;
}
