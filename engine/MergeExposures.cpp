// The merge of a series: one streaming pass over the rows of all sources.
#include "engine/HDRRoutine.h"

#include "Util/Assertion.h"
#include "Util/FailureLog.h"
#include "Util/Paths.h"
#include "Util/RegularFile.h"
#include "engine/CacheFolder.h"
#include "engine/ExposureMerge.h"
#include "engine/HDRWorkspace.h"
#include "engine/MergeRow.h"
#include "engine/ScaledSize.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <fstream>
#include <memory>
#include <utility>

namespace {

constexpr const char* STEP = "merge";
constexpr std::int32_t PREVIEW_ROWS = 500; // the scaled-down copy has this many rows or up to twice as many

std::size_t Size(std::int32_t nCount)
{
    return static_cast<std::size_t>(nCount);
}

/// One row of each source cache file. The streams close when it goes.
class SourceRows {
public:
    SourceRows(const std::vector<std::wstring>& vsFiles, std::int32_t nWidth) : m_nRowBytes(4 * Size(nWidth))
    {
        m_vSources.reserve(vsFiles.size()); // the rows must not move once Rows() has seen them
        for (const std::wstring& sFile : vsFiles)
            m_bOpen = m_bOpen && Open(LS::Util::NarrowPath(sFile));
    }

    bool IsOpen() const { return m_bOpen; }

    /// Reads the next row of every source. @return false if one is too short
    bool ReadRow()
    {
        return std::all_of(m_vSources.begin(), m_vSources.end(), [this](Source& source) {
            errno = 0;
            source.stream.read(source.row.get(), static_cast<std::streamsize>(m_nRowBytes));
            if (!source.stream)
                LS::Util::LogFailure(STEP, source.sPath,
                                     errno ? LS::Util::SystemError() : "the source cache file is too short");
            return static_cast<bool>(source.stream);
        });
    }

    /// The rows, in the order of the images; valid as long as this object, filled anew by ReadRow.
    const std::vector<const unsigned char*>& Rows() const { return m_vRows; }

private:
    struct Source {
        std::string sPath;
        std::ifstream stream;
        std::unique_ptr<char[]> row;
    };

    bool Open(const std::string& sPath)
    {
        std::string sReason; // a pipe would block
        if (!LS::Util::IsRegularFile(sPath, sReason)) {
            LS::Util::LogFailure(STEP, sPath, sReason);
            return false;
        }
        Source source{sPath, std::ifstream(sPath, std::ios::binary),
                      std::make_unique_for_overwrite<char[]>(m_nRowBytes)};
        if (!source.stream) {
            LS::Util::LogFailure(STEP, sPath, LS::Util::SystemError());
            return false;
        }
        m_vRows.push_back(reinterpret_cast<const unsigned char*>(source.row.get()));
        m_vSources.push_back(std::move(source));
        return true;
    }

    std::size_t m_nRowBytes;
    bool m_bOpen = true;
    std::vector<Source> m_vSources;
    std::vector<const unsigned char*> m_vRows;
};

/// The float cache file while it is being written. Deleted again when a write fails.
class FloatCacheFile {
public:
    FloatCacheFile(std::wstring sPath, std::int32_t nWidth)
        : m_sPath(std::move(sPath)), m_nRowBytes(3 * sizeof(float) * Size(nWidth)),
          m_stream(LS::Util::NarrowPath(m_sPath), std::ios::binary)
    {
        if (!m_stream)
            Log();
    }

    bool IsOpen() const { return static_cast<bool>(m_stream); }

    bool WriteRow(const float* pfRow)
    {
        m_stream.write(reinterpret_cast<const char*>(pfRow), static_cast<std::streamsize>(m_nRowBytes));
        return m_stream || Discard();
    }

    bool Close()
    {
        m_stream.close();
        return m_stream || Discard();
    }

    const std::wstring& Path() const { return m_sPath; }

private:
    void Log() const { LS::Util::LogFailure(STEP, LS::Util::NarrowPath(m_sPath), LS::Util::SystemError()); }

    bool Discard()
    {
        Log();
        m_stream.close();
        std::remove(LS::Util::NarrowPath(m_sPath).c_str());
        return false;
    }

    std::wstring m_sPath;
    std::size_t m_nRowBytes;
    std::ofstream m_stream;
};

/// The scaled-down copy: plain decimation of the merged rows.
class ScaledImage {
public:
    explicit ScaledImage(const ScaledSize& size)
        : m_size(size),
          m_pfPixels(std::make_unique_for_overwrite<float[]>(3 * Size(size.nWidth) * Size(size.nHeight)))
    {
    }

    void TakeRow(std::int32_t y, const float* pfRow)
    {
        if (y % m_size.nStepY != 0 || y / m_size.nStepY >= m_size.nHeight)
            return;
        float* pfOut = m_pfPixels.get() + 3 * Size(y / m_size.nStepY) * Size(m_size.nWidth);
        for (std::int32_t x = 0; x < m_size.nWidth; ++x, pfOut += 3)
            std::copy_n(pfRow + 3 * Size(x) * Size(m_size.nStepX), 3, pfOut);
    }

    std::unique_ptr<float[]> Release() { return std::move(m_pfPixels); }

private:
    ScaledSize m_size;
    std::unique_ptr<float[]> m_pfPixels;
};

} // namespace

bool MergeExposures(const std::vector<std::wstring>& vsLDRFiles, std::int32_t nWidth, std::int32_t nHeight,
                    const std::vector<float>& vfShutters, const std::vector<float>& vfStops,
                    const std::vector<float>& vfGains, const std::vector<float>& vfNDs,
                    const std::vector<float*>& vafCurves, ProgbarSetter* pProgress, HDRWorkspace* pHDRInfo)
{
    LS_ASSERT(vsLDRFiles.size() > 0);
    LS_ASSERT(vsLDRFiles.size() == vfShutters.size());
    LS_ASSERT(vsLDRFiles.size() == vfStops.size());
    LS_ASSERT(vsLDRFiles.size() == vfGains.size());
    LS_ASSERT(vsLDRFiles.size() == vfNDs.size());
    LS_ASSERT(vafCurves.size() == 3);
    LS_ASSERT(pHDRInfo != NULL); // NOLINT(modernize-use-nullptr): the text goes to the log

    if (nWidth <= 0 || nHeight <= 0) { // of photographs that were never decoded and tell no size
        LS::Util::LogFailure(STEP, "", "the size of the images is unknown");
        return false;
    }
    const ScaledSize size = Decimated(nWidth, nHeight, PREVIEW_ROWS);
    if (size.nWidth == 0) {
        LS::Util::LogFailure(STEP, "", "the image is too narrow for its height");
        return false;
    }
    ScaledImage scaled(size);

    std::vector<float> vfExposures;
    ExposureList(vfShutters, vfStops, vfExposures);
    std::vector<float> vfWeights;
    BuildWeightTable(vfWeights);
    std::int32_t nLow = 0, nHigh = 0;
    FindWeightRange(vfWeights, &nLow, &nHigh);

    SourceRows sources(vsLDRFiles, nWidth);
    if (!sources.IsOpen())
        return false;
    if (!CreateCacheFolder()) {
        LS::Util::LogFailure(STEP, LS::Util::NarrowPath(CacheFolder()), LS::Util::SystemError());
        return false;
    }
    FloatCacheFile cache(NewFloatCachePath(), nWidth);
    if (!cache.IsOpen())
        return false;

    const MergeTables tables(vfExposures, vafCurves, vfWeights, nLow, nHigh);
    const auto pfRow = std::make_unique_for_overwrite<float[]>(3 * Size(nWidth));
    for (std::int32_t y = 0; y < nHeight; ++y) {
        if (!sources.ReadRow())
            return false;
        MergeRow(tables, sources.Rows(), nWidth, pfRow.get());
        if (pHDRInfo->bCancel) {
            ResetWorkspace();
            return false;
        }
        if (!cache.WriteRow(pfRow.get()))
            return false;
        scaled.TakeRow(y, pfRow.get());
        Report(pProgress, RowPercent(y, nHeight));
    }
    if (!cache.Close())
        return false;

    // Only here does the workspace change, so every return above leaves it empty.
    pHDRInfo->nHeight = nHeight;
    pHDRInfo->nWidth = nWidth;
    pHDRInfo->nScaledHeight = size.nHeight;
    pHDRInfo->nScaledWidth = size.nWidth;
    pHDRInfo->sHDRFile = cache.Path();
    pHDRInfo->pfScaled = scaled.Release();
    pHDRInfo->vafCurves = vafCurves;
    Report(pProgress, 100);
    return true;
}
