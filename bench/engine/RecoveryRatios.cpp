// Recovery of response curves against its targets: what it costs beside the solver that it can't do without.
#include "bench/support/Ratios.h"
#include "engine/CacheFolder.h"
#include "engine/HDRRoutine.h"
#include "engine/OwnedCurves.h"
#include "tests/support/SyntheticSeries.h"
#include "tests/support/TempFolder.h"

#include <dlfcn.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace {

using Solver = void(const std::int32_t*, const std::int32_t*, const std::int32_t*, double*,
                    const std::int32_t*, double*, const std::int32_t*, double*, const double*, std::int32_t*,
                    double*, const std::int32_t*, std::int32_t*);

Solver* LibrarySolver()
{
    static const auto pSolver = reinterpret_cast<Solver*>(::dlsym(RTLD_NEXT, "dgelss_"));
    return pSolver;
}

/// A system as the solver received it.
struct System {
    std::int32_t nRows, nColumns, nWork;
    std::vector<double> vA, vB;
};

std::vector<System>* g_pRecording = nullptr;

/// The solver's share of a recovery: the same systems, and the arrays that each call needs.
void SolveAgain(const std::vector<System>& vSystems)
{
    const std::int32_t nRightSides = 1;
    const double dCondition = -1;
    for (const System& system : vSystems) {
        std::vector<double> vA = system.vA, vB = system.vB; // it overwrites them
        std::vector<double> vSingular(static_cast<std::size_t>(system.nColumns));
        std::vector<double> vWork(static_cast<std::size_t>(system.nWork));
        std::int32_t nRank = 0, nInfo = 0;
        LibrarySolver()(&system.nRows, &system.nColumns, &nRightSides, vA.data(), &system.nRows, vB.data(),
                        &system.nRows, vSingular.data(), &dCondition, &nRank, vWork.data(), &system.nWork,
                        &nInfo);
    }
}

void Recover(const LS::Tests::SyntheticSeries& series)
{
    OwnedCurves curves;
    LS::Bench::Require(CalculateCurves(series.vsFiles, series.nWidth, series.nHeight, series.vfShutters,
                                       series.vfStops, series.vfGains, series.vfNDs, curves.Get(), nullptr),
                       "no curves");
}

void MeasureRecovery(LS::Bench::RatioTable& table)
{
    const LS::Tests::TempFolder home;
    RedirectCacheFolder(home.WideFile("hdrcache"));
    // The copy of a photograph of 6000 x 4000 pixels that recovery works on.
    const LS::Tests::SyntheticScene scene = LS::Tests::RenderScene(461, 307);
    for (const int nImages : {3, 5, 7, 9}) {
        const std::string sWhat =
            "recovery, " + std::to_string(nImages) + " images: beside its six calls of the solver";
        if (!table.Wants(sWhat))
            continue;
        const LS::Tests::TempFolder folder;
        const auto series =
            LS::Tests::Photograph(folder, scene, LS::Tests::FilmResponse{}, LS::Tests::Bracket(nImages, 2.5));
        std::vector<System> vSystems;
        g_pRecording = &vSystems;
        Recover(series);
        g_pRecording = nullptr;
        LS::Bench::Require(vSystems.size() == 6, "not six calls");
        table.Ratio(
            sWhat, 1.15, [&] { Recover(series); }, [&] { SolveAgain(vSystems); });
    }
}

} // namespace

/// Stands before the library's function of this name, passes each call on, and keeps what it was given.
extern "C" void dgelss_(const std::int32_t* pnRows, const std::int32_t* pnColumns,
                        const std::int32_t* pnRightSides, double* pdA, const std::int32_t* pnLeadingA,
                        double* pdB, const std::int32_t* pnLeadingB, double* pdSingular,
                        const double* pdCondition, std::int32_t* pnRank, double* pdWork,
                        const std::int32_t* pnWork, std::int32_t* pnInfo)
{
    if (g_pRecording) {
        const auto nRows = static_cast<std::size_t>(*pnRows);
        const auto nColumns = static_cast<std::size_t>(*pnColumns);
        g_pRecording->push_back(
            {*pnRows, *pnColumns, *pnWork, {pdA, pdA + nRows * nColumns}, {pdB, pdB + nRows}});
    }
    LibrarySolver()(pnRows, pnColumns, pnRightSides, pdA, pnLeadingA, pdB, pnLeadingB, pdSingular,
                    pdCondition, pnRank, pdWork, pnWork, pnInfo);
}

int main(int argc, char** argv)
{
    return LS::Bench::PrintRows(argc, argv, MeasureRecovery);
}
