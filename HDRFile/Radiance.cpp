// Writes a float cache file as a Radiance RGBE picture.
#include "HDRFile/Radiance.h"

#include "HDRFile/FloatCacheReader.h"
#include "HDRFile/PictureStream.h"
#include "HDRFile/Rgbe.h"
#include "Util/FailureLog.h"

#include <span>

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

    const auto writeRow = [&](std::int32_t, std::span<const float> fRow) {
        return WriteRgbeScanlines(picture.File(), fRow.data(), nWidth, 1) == 0 || LogWriteError(fileName);
    };
    return StreamRows(HDRDataFile, nWidth, nHeight, pProgress, g_nLastPercent, writeRow) && picture.Close();
}

} // namespace

bool WriteRadianceFile(const char* HDRDataFile, const char* fileName, std::int32_t nWidth,
                       std::int32_t nHeight, ProgbarSetter* pProgress)
{
    if (!CheckWriterArguments(HDRDataFile, fileName, nWidth, nHeight))
        return false;
    const auto save = [&] { return WritePicture(HDRDataFile, fileName, nWidth, nHeight, pProgress); };
    if (!CatchAndLog(fileName, save))
        return false;
    Report(pProgress, 100);
    return true;
}
