// A photographed series, and the engine's operations on it.
#pragma once

#include "Util/Paths.h"
#include "Util/PixelBuffer.h"
#include "engine/HDRRoutine.h"
#include "engine/HDRWorkspace.h"
#include "engine/OwnedCurves.h"
#include "engine/RecoveryReport.h"
#include "tests/support/SyntheticSeries.h"

#include <gtest/gtest.h>

namespace LS::Tests {

class SeriesFixture : public testing::Test {
protected:
    ~SeriesFixture() override { ResetWorkspace(); }

    void Photograph(const SyntheticScene& scene, int nImages, double dFactor,
                    const FilmResponse& response = {})
    {
        series = Tests::Photograph(folder, scene, response, Bracket(nImages, dFactor));
    }

    void Photograph(std::int32_t nWidth, std::int32_t nHeight, int nImages, double dFactor = 2.5)
    {
        Photograph(RenderScene(nWidth, nHeight), nImages, dFactor);
    }

    std::string File(std::size_t i) const { return Util::NarrowPath(series.vsFiles[i]); }

    /// Merges with the standard curve.
    bool Merge(ProgbarSetter* pProgress = nullptr)
    {
        ResetWorkspace();
        OwnedCurves curves;
        LoadCurves(nullptr, curves.Get());
        const bool bDone =
            MergeExposures(series.vsFiles, series.nWidth, series.nHeight, series.vfShutters, series.vfStops,
                           series.vfGains, series.vfNDs, curves.Get(), pProgress, &Workspace());
        if (bDone)
            curves.Release();
        return bDone;
    }

    bool Recover(OwnedCurves& curves, ProgbarSetter* pProgress = nullptr)
    {
        return CalculateCurves(series.vsFiles, series.nWidth, series.nHeight, series.vfShutters,
                               series.vfStops, series.vfGains, series.vfNDs, curves.Get(), pProgress,
                               &report);
    }

    /// The preview of CreateHDRImage; empty for null.
    Bytes Create(OwnedCurves& curves, ProgbarSetter* pProgress = nullptr)
    {
        nOutWidth = nOutHeight = -7;
        unsigned char* const pPreview =
            CreateHDRImage(series.vsFiles, series.nWidth, series.nHeight, series.vfShutters, series.vfStops,
                           series.vfGains, series.vfNDs, curves.Get(), &nOutWidth, &nOutHeight, pProgress);
        if (pPreview)
            curves.Release();
        return Taken(pPreview);
    }

    /// The full-size picture at the defaults; empty for null.
    Bytes MapFull(ProgbarSetter* pProgress)
    {
        nOutWidth = nOutHeight = -7;
        return Taken(ToneMapFull(0, 2.2F, &nOutWidth, &nOutHeight, pProgress));
    }

    /// The pixels of a result, which is freed.
    Bytes Taken(unsigned char* pResult) const
    {
        const Util::PixelBuffer pPixels(pResult);
        return pPixels ? Bytes(pResult, pResult + std::ptrdiff_t{3} * nOutWidth * nOutHeight) : Bytes();
    }

    static void ExpectEmptyWorkspace()
    {
        const HDRWorkspace& workspace = Workspace();
        EXPECT_EQ(0, workspace.nWidth + workspace.nHeight + workspace.nScaledWidth + workspace.nScaledHeight);
        EXPECT_TRUE(workspace.sHDRFile.empty() && !workspace.pfScaled && workspace.vafCurves.empty());
        EXPECT_FALSE(workspace.bCancel);
    }

    TempFolder folder;
    SyntheticSeries series;
    RecoveryReport report;                      ///< of the latest Recover
    std::int32_t nOutWidth = 0, nOutHeight = 0; ///< of the latest Create or MapFull
};

} // namespace LS::Tests
