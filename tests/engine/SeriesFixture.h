// A photographed series, and the engine's operations on it.
#pragma once

#include "Util/Paths.h"
#include "Util/PixelBuffer.h"
#include "engine/HDRRoutine.h"
#include "engine/HDRWorkspace.h"
#include "engine/OwnedCurves.h"
#include "tests/support/SyntheticSeries.h"

#include <gtest/gtest.h>

namespace LS::Tests {

class SeriesFixture : public testing::Test {
protected:
    ~SeriesFixture() override { ResetWorkspace(); }

    void Photograph(std::int32_t nWidth, std::int32_t nHeight, int nImages, double dFactor = 2.5)
    {
        series = Tests::Photograph(folder, RenderScene(nWidth, nHeight), {}, Bracket(nImages, dFactor));
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

    bool Recover(OwnedCurves& curves, ProgbarSetter* pProgress)
    {
        return CalculateCurves(series.vsFiles, series.nWidth, series.nHeight, series.vfShutters,
                               series.vfStops, series.vfGains, series.vfNDs, curves.Get(), pProgress);
    }

    /// The preview of CreateHDRImage; empty for null.
    Bytes Create(OwnedCurves& curves, ProgbarSetter* pProgress = nullptr)
    {
        nOutWidth = nOutHeight = -7;
        const Util::PixelBuffer pPreview(
            CreateHDRImage(series.vsFiles, series.nWidth, series.nHeight, series.vfShutters, series.vfStops,
                           series.vfGains, series.vfNDs, curves.Get(), &nOutWidth, &nOutHeight, pProgress));
        if (!pPreview)
            return {};
        curves.Release();
        return {pPreview.get(), pPreview.get() + std::ptrdiff_t{3} * nOutWidth * nOutHeight};
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
    std::int32_t nOutWidth = 0, nOutHeight = 0; ///< what Create received
};

} // namespace LS::Tests
