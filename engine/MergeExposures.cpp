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
#include <cstddef>
#include <cstdio>
#include <memory>
#include <utility>

#include <fcntl.h>

using LS::Util::RegularFile;

namespace {

constexpr const char* STEP = "merge";
constexpr std::int32_t PREVIEW_ROWS = 500; // the scaled-down copy has this many rows or up to twice as many

std::size_t Size(std::int32_t nCount)
{
    return static_cast<std::size_t>(nCount);
}

/// One row of each source cache file. The files close when it goes.
class SourceRows {
public:
    SourceRows(const std::vector<std::wstring>& vsFiles, std::int32_t nWidth) : m_nRowBytes(4 * Size(nWidth))
    {
        m_vSources.reserve(vsFiles.size()); // the rows must not move once Rows() has seen them
        for (const std::wstring& sFile : vsFiles) {
            m_vSources.push_back({RegularFile(STEP, LS::Util::NarrowPath(sFile), O_RDONLY),
                                  std::make_unique_for_overwrite<unsigned char[]>(m_nRowBytes)});
            m_vRows.push_back(m_vSources.back().row.get());
            if (!m_vSources.back().file.IsOpen())
                return;
        }
        m_bOpen = true;
    }

    bool IsOpen() const { return m_bOpen; }

    /// Reads the next row of every source. @return false if one is too short
    bool ReadRow()
    {
        const std::size_t nOffset = m_nRow++ * m_nRowBytes;
        return std::ranges::all_of(m_vSources, [&](const Source& source) {
            return source.file.Read(nOffset, source.row.get(), m_nRowBytes);
        });
    }

    /// The rows, in the order of the images; valid as long as this object, filled anew by ReadRow.
    const std::vector<const unsigned char*>& Rows() const { return m_vRows; }

private:
    struct Source {
        RegularFile file;
        std::unique_ptr<unsigned char[]> row;
    };

    std::size_t m_nRowBytes;
    std::size_t m_nRow = 0;
    bool m_bOpen = false;
    std::vector<Source> m_vSources;
    std::vector<const unsigned char*> m_vRows;
};

/// The float cache file while it is being written. Deleted again when a write fails.
class FloatCacheFile {
public:
    FloatCacheFile(std::wstring sPath, std::int32_t nWidth)
        : m_sPath(std::move(sPath)), m_nRowBytes(3 * sizeof(float) * Size(nWidth)),
          m_file(STEP, LS::Util::NarrowPath(m_sPath), O_WRONLY | O_CREAT | O_TRUNC, LS::Util::OWNER_ONLY)
    {
    }

    bool IsOpen() const { return m_file.IsOpen(); }
    bool WriteRow(const float* pfRow) { return m_file.Write(pfRow, m_nRowBytes) || Discard(); }
    bool Close() { return m_file.Close() || Discard(); }
    const std::wstring& Path() const { return m_sPath; }

private:
    bool Discard() const
    {
        std::remove(m_file.Path().c_str());
        return false;
    }

    std::wstring m_sPath;
    std::size_t m_nRowBytes;
    RegularFile m_file;
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
