// The road by rows: three passes, with luminance in memory and chromaticity on disk.
#include "engine/TMORoutine.h"

#include "Util/Assertion.h"
#include "Util/FailureLog.h"
#include "Util/Paths.h"
#include "Util/RegularFile.h"
#include "engine/CacheFolder.h"
#include "engine/Colour.h"
#include "engine/DisplayCurve.h"
#include "engine/HDRWorkspace.h"
#include "engine/LuminanceCompression.h"
#include "engine/ProgbarSetter.h"

#include <cstddef>
#include <cstdio>
#include <span>
#include <vector>

#include <fcntl.h>

using LS::Util::PixelBuffer;
using LS::Util::RegularFile;

namespace {

std::size_t Size(std::int32_t nCount)
{
    return static_cast<std::size_t>(nCount);
}

constexpr const char* STEP = "tone map";

/// Rows of a headerless file of floats, from its first to its last. Failures are logged.
class FloatRowReader {
public:
    FloatRowReader(const std::wstring& sFile, std::size_t nRowFloats)
        : m_file(STEP, LS::Util::NarrowPath(sFile), O_RDONLY), m_vfRow(nRowFloats)
    {
    }

    bool IsOpen() const { return m_file.IsOpen(); }

    bool ReadRow()
    {
        const std::size_t nBytes = m_vfRow.size() * sizeof(float);
        return m_file.Read(m_nRow++ * nBytes, m_vfRow.data(), nBytes);
    }

    /// The latest row; the reader of it may change it.
    float* Row() { return m_vfRow.data(); }

private:
    RegularFile m_file;
    std::size_t m_nRow = 0;
    std::vector<float> m_vfRow;
};

/// @return false once the user asked to stop
bool ReportRow(ProgbarSetter* pProgress, std::int32_t y, std::int32_t nHeight)
{
    Report(pProgress, RowPercent(y, nHeight));
    return !Workspace().bCancel;
}

/// Takes interleaved Y, x, y apart into luminance and chromaticity.
void SplitRow(const float* pfYxy, std::int32_t nWidth, float* pfY, float* pfXY)
{
    for (std::int32_t x = 0; x < nWidth; ++x, pfYxy += 3) {
        *pfY++ = pfYxy[0];
        *pfXY++ = pfYxy[1];
        *pfXY++ = pfYxy[2];
    }
}

/// @param vfRGB  room for the row's channel values   @param pBytes  receives as many bytes
void RowToBytes(const float* pfY, const float* pfXY, std::span<float> vfRGB, const DisplayBytes& displayBytes,
                unsigned char* pBytes)
{
    YxyToRGB(pfY, pfXY, static_cast<std::int32_t>(vfRGB.size() / 3), vfRGB.data());
    displayBytes.Convert(vfRGB, pBytes);
}

void DeleteFile(const std::wstring& sFile)
{
    const std::string sPath = LS::Util::NarrowPath(sFile);
    if (std::remove(sPath.c_str()) != 0)
        LS::Util::LogFailure(STEP, sPath, LS::Util::SystemError());
}

} // namespace

PixelBuffer ToneMapCacheByRows(const std::wstring& sFile, std::int32_t nWidth, std::int32_t nHeight,
                               float fExposure, float fGamma, ProgbarSetter* pProgress)
{
    const std::wstring sXYFile = CacheFolder() + L"xydata.tmp";
    float fMax = 0, fLogAverage = 0;
    const auto pYChan = SplitLuminance(&fLogAverage, sFile, sXYFile, nWidth, nHeight, &fMax,
                                       SubProgress(pProgress, 1, 20).Get());
    if (!pYChan)
        return nullptr;
    if (!CompressLuminance(pYChan.get(), nWidth, nHeight, fExposure, fMax, fLogAverage, TONE_BIAS,
                           SubProgress(pProgress, 21, 30).Get()))
        return nullptr;
    PixelBuffer pPixels =
        RecombineRows(SubProgress(pProgress, 31, 99).Get(), pYChan.get(), sXYFile, nWidth, nHeight, fGamma);
    if (!pPixels)
        return nullptr;
    DeleteFile(sXYFile);
    Report(pProgress, 100);
    return pPixels;
}

LS::Util::LargeBuffer<float> SplitLuminance(float* pfLogAverage, const std::wstring& sFile,
                                            const std::wstring& sXYFile, std::int32_t nWidth,
                                            std::int32_t nHeight, float* pfMax, ProgbarSetter* pProgress)
{
    FloatRowReader cache(sFile, 3 * Size(nWidth));
    if (!cache.IsOpen())
        return nullptr;
    RegularFile chroma(STEP, LS::Util::NarrowPath(sXYFile), O_WRONLY | O_CREAT | O_TRUNC,
                       LS::Util::OWNER_ONLY);
    if (!chroma.IsOpen())
        return nullptr;

    auto pYChan = LS::Util::MakeLargeBuffer<float>(Size(nWidth) * Size(nHeight));
    std::vector<float> vfXY(2 * Size(nWidth));
    float fSumLog = 0;
    float fMax = MAX_START_BY_ROWS;
    float* pfY = pYChan.get();
    for (std::int32_t y = 0; y < nHeight; ++y, pfY += nWidth) {
        if (!cache.ReadRow())
            return nullptr;
        RowToYxy(cache.Row(), nWidth, &fSumLog, &fMax);
        SplitRow(cache.Row(), nWidth, pfY, vfXY.data());
        if (!chroma.Write(vfXY.data(), vfXY.size() * sizeof(float)))
            return nullptr;
        if (!ReportRow(pProgress, y, nHeight))
            return nullptr;
    }
    if (!chroma.Close())
        return nullptr;
    *pfMax = fMax;
    *pfLogAverage = LogAverage(fSumLog, nWidth, nHeight);
    Report(pProgress, 100);
    return pYChan;
}

bool CompressLuminance(float* pYChan, std::int32_t nWidth, std::int32_t nHeight, float fExposure, float fMax,
                       float fLogAverage, float fBias, ProgbarSetter* pProgress)
{
    LS_ASSERT(pYChan != NULL); // NOLINT(modernize-use-nullptr): the text goes to the log
    LS_ASSERT(nWidth > 0);
    LS_ASSERT(nHeight > 0);
    const ToneCurve curve(fExposure, fMax, fLogAverage, fBias);
    if (!CompressPlane(pYChan, nWidth, nHeight, curve,
                       [&](std::int32_t y) { return ReportRow(pProgress, y, nHeight); }))
        return false;
    Report(pProgress, 100);
    return true;
}

PixelBuffer RecombineRows(ProgbarSetter* pProgress, const float* pYChan, const std::wstring& sXYFile,
                          std::int32_t nWidth, std::int32_t nHeight, float fGamma)
{
    const std::size_t nRowBytes = 3 * Size(nWidth);
    PixelBuffer pPixels = LS::Util::MakePixelBuffer(nRowBytes * Size(nHeight));
    FloatRowReader chroma(sXYFile, 2 * Size(nWidth));
    if (!chroma.IsOpen())
        return nullptr;
    const DisplayBytes displayBytes(fGamma);
    std::vector<float> vfRGB(nRowBytes);
    unsigned char* pOut = pPixels.get();
    for (std::int32_t y = 0; y < nHeight; ++y, pYChan += nWidth, pOut += nRowBytes) {
        if (!chroma.ReadRow())
            return nullptr;
        RowToBytes(pYChan, chroma.Row(), vfRGB, displayBytes, pOut);
        if (!ReportRow(pProgress, y, nHeight))
            return nullptr;
    }
    Report(pProgress, 100);
    return pPixels;
}

std::unique_ptr<unsigned char[]> YxyRowToBytes(const float* pYChan, const float* pxyChan, std::int32_t nWidth,
                                               float fGamma)
{
    LS_ASSERT(pYChan != NULL);  // NOLINT(modernize-use-nullptr): the text goes to the log
    LS_ASSERT(pxyChan != NULL); // NOLINT(modernize-use-nullptr): the text goes to the log
    LS_ASSERT(nWidth > 0);
    LS_ASSERT(fGamma > 0);
    std::vector<float> vfRGB(3 * Size(nWidth));
    auto pBytes = std::make_unique_for_overwrite<unsigned char[]>(vfRGB.size());
    RowToBytes(pYChan, pxyChan, vfRGB, DisplayBytes(fGamma), pBytes.get());
    return pBytes;
}
