// The series, the two solves of each channel, and the curves that come out.
#include "engine/CHDRConstruct.h"

#include "Util/FailureLog.h"
#include "engine/CurveSystem.h"
#include "engine/HDRRoutine.h"
#include "engine/HDRWorkspace.h"
#include "engine/ProgbarSetter.h"
#include "engine/RecoveryTables.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <exception>
#include <numeric>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>

namespace {

constexpr const char* STEP = "recover curves";

/// The seconds since the last call, or since this object was made.
class Stopwatch {
public:
    double Lap()
    {
        const auto before = std::exchange(m_start, std::chrono::steady_clock::now());
        return std::chrono::duration<double>(m_start - before).count();
    }

private:
    std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
};

double SumOfSquares(const std::array<double, CURVE_ENTRIES>& table)
{
    return std::inner_product(table.begin(), table.end(), table.begin(), 0.0);
}

/// As many samples as keep the readings at or near 1024, whatever the number of images.
std::int32_t SamplesOfASolve(std::int32_t nImages)
{
    return std::min(4 * (static_cast<std::int32_t>(MOST_RECOVERED_IMAGES) / nImages), 256);
}

bool SolveLogged(CurveSystem& system)
{
    const std::int32_t nInfo = system.Solve();
    if (nInfo != 0)
        LS::Util::LogFailure(STEP, "", "the equations have no solution, INFO " + std::to_string(nInfo));
    return nInfo == 0;
}

void AddFixedRows(CurveSystem& system, float fSmooth, double dBiweightEnergy)
{
    system.AddAnchor();
    system.AddSmoothness(fSmooth, dBiweightEnergy);
}

/// Reads the curve at each value of the grid's range, and continues it flat on either side.
void ReadCurve(const LogGrid& grid, std::span<const double> nodes, float* pfCurve)
{
    const auto low = static_cast<std::size_t>(grid.Low());
    const auto high = static_cast<std::size_t>(grid.High());
    for (std::size_t z = low; z <= high; ++z)
        pfCurve[z] = CurveAt(nodes, grid.PositionOf(static_cast<float>(z)));
    std::fill(pfCurve, pfCurve + low, pfCurve[low]);
    std::fill(pfCurve + high + 1, pfCurve + CURVE_ENTRIES, pfCurve[high]);
}

} // namespace

CHDRConstruct::CHDRConstruct(std::int32_t nImageWidth, std::int32_t nImageHeight)
    : nHeight(nImageHeight), nWidth(nImageWidth), dBiweightEnergy(SumOfSquares(BiweightTable()))
{
}

CHDRConstruct::~CHDRConstruct() = default;

std::size_t CHDRConstruct::PixelCount() const
{
    return static_cast<std::size_t>(nWidth) * static_cast<std::size_t>(nHeight);
}

void CHDRConstruct::AddImage(std::unique_ptr<LDRImage> pImage)
{
    if (!pImage)
        throw std::invalid_argument("LDRImage is Null!");
    if (nWidth == 0 && nHeight == 0) {
        nWidth = pImage->nWidth;
        nHeight = pImage->nHeight;
    }
    if (pImage->nWidth != nWidth || pImage->nHeight != nHeight)
        throw std::invalid_argument(
            "The width or height of LDRImage is not equal to the ones of CHDRConstruct!");
    if (!std::isfinite(pImage->fLogExposure)) // it would have no place in the order
        throw std::invalid_argument("the exposure is not finite");

    m_vMask.clear();
    const auto darker = [](float fLogExposure, const std::unique_ptr<LDRImage>& p) {
        return fLogExposure < p->fLogExposure;
    };
    vpImages.insert(std::upper_bound(vpImages.begin(), vpImages.end(), pImage->fLogExposure, darker),
                    std::move(pImage));
    nSamples = SamplesOfASolve(static_cast<std::int32_t>(vpImages.size()));
}

bool CHDRConstruct::Construct(ProgbarSetter* pProgress)
{
    if (vpImages.size() < 2) {
        LS::Util::LogFailure(STEP, "", "fewer than two images");
        return false;
    }
    if (nSamples == 0) {
        LS::Util::LogFailure(STEP, "",
                             std::to_string(vpImages.size()) +
                                 " images; a curve is calculated from at most " +
                                 std::to_string(MOST_RECOVERED_IMAGES));
        return false;
    }
    m_report = {};
    try {
        pfInformation.assign(PixelCount(), 0.0F);
        for (std::int32_t c = 0; c < static_cast<std::int32_t>(CURVE_CHANNELS); ++c) {
            SubProgress progress(pProgress, static_cast<std::int32_t>(c / 3.0 * 100 + 1),
                                 static_cast<std::int32_t>((c + 1) / 3.0 * 100));
            auto pHolder = SolveChannel(c, progress.Get());
            if (!pHolder)
                return false;
            ppCurves[static_cast<std::size_t>(c)] = std::move(pHolder);
        }
        return true;
    } catch (const std::exception& e) {
        LS::Util::LogFailure(STEP, "", e.what());
        return false;
    }
}

std::unique_ptr<CurveHolder> CHDRConstruct::SolveChannel(std::int32_t nChannel, ProgbarSetter* pProgress)
{
    auto pHolder = std::make_unique<CurveHolder>();
    pHolder->pfCurve = std::make_unique<float[]>(CURVE_ENTRIES);
    SubProgress progress(pProgress, 1, 100);
    if (!RecoverChannel(nChannel, pHolder->pfCurve.get(), progress.Get()))
        return nullptr;
    return pHolder;
}

bool CHDRConstruct::RecoverChannel(std::int32_t nChannel, float* pfCurve, ProgbarSetter* pProgress)
{
    RecoveryReport::Channel& report = m_report.channels[static_cast<std::size_t>(nChannel)];
    Stopwatch watch;

    Report(pProgress, 2);
    nLow = 0;
    nHigh = 255;
    std::vector<SampleRecord> vRecords(vpImages.size() * CURVE_ENTRIES);
    SubProgress statistics(pProgress, 1, 15);
    const bool bCollected = CollectStatistics(vRecords, nChannel, statistics.Get());
    report.nLow = nLow;
    report.nHigh = nHigh;
    report.dStatisticsSeconds = watch.Lap();
    if (!bCollected)
        return false;

    std::vector<std::size_t> vnSamples;
    const bool bSelected = SelectSamples(vRecords, nChannel, vnSamples);
    report.nSamples = static_cast<std::int32_t>(vnSamples.size());
    report.dSelectionSeconds = watch.Lap();
    if (!bSelected)
        return false;

    std::vector<double> vdRadiances;
    const bool bFirst = SolveRadiances(vRecords, vnSamples, vdRadiances, pProgress);
    report.dFirstSolveSeconds = watch.Lap();
    if (!bFirst)
        return false;

    const bool bSecond = SolveCurve(vRecords, vnSamples, vdRadiances, pfCurve, pProgress);
    report.dSecondSolveSeconds = watch.Lap();
    if (!bSecond)
        return false;
    Report(pProgress, 100);
    return true;
}

/// The readings of one sample in all images. Its log radiance is unknown where pdRadiance is null.
void CHDRConstruct::AddSample(CurveSystem& system, const SampleRecord& record, std::int32_t nSample,
                              const double* pdRadiance) const
{
    for (std::size_t i = 0; i < vpImages.size(); ++i) {
        const float fValue = record.pfValues[i];
        const double dTrust = BiweightTable()[static_cast<std::size_t>(fValue)];
        const auto fWeight =
            static_cast<float>(SlopeWeight(static_cast<std::int32_t>(i), record.pfValues.get()) * dTrust);
        const double dLogExposure = vpImages[i]->fLogExposure;
        if (pdRadiance)
            system.AddReading(fValue, fWeight, dLogExposure + *pdRadiance, std::nullopt);
        else
            system.AddReading(fValue, fWeight, dLogExposure, nSample);
    }
}

/// The first solve: curve and radiances together, strongly smoothed. Only the radiances are kept.
bool CHDRConstruct::SolveRadiances(std::span<const SampleRecord> pRecords,
                                   std::span<const std::size_t> vnSamples, std::vector<double>& vdRadiances,
                                   ProgbarSetter* pProgress) const
{
    const auto nCount = static_cast<std::int32_t>(vnSamples.size());
    CurveSystem system({nLow, nHigh}, nCount * static_cast<std::int32_t>(vpImages.size()), nCount);
    for (std::int32_t q = 0; q < nCount; ++q)
        AddSample(system, pRecords[vnSamples[static_cast<std::size_t>(q)]], q, nullptr);
    AddFixedRows(system, fSmooth1, dBiweightEnergy);
    Report(pProgress, 18);
    if (!SolveLogged(system))
        return false;
    Report(pProgress, 50);
    if (Workspace().bCancel)
        return false;

    vdRadiances.resize(vnSamples.size());
    for (std::int32_t q = 0; q < nCount; ++q)
        vdRadiances[static_cast<std::size_t>(q)] = system.LogRadiance(q);
    return true;
}

/// The second solve: with the radiances known, the curve alone, weakly smoothed.
bool CHDRConstruct::SolveCurve(std::span<const SampleRecord> pRecords, std::span<const std::size_t> vnSamples,
                               std::span<const double> vdRadiances, float* pfCurve,
                               ProgbarSetter* pProgress) const
{
    const auto nCount = static_cast<std::int32_t>(vnSamples.size());
    const LogGrid grid(nLow, nHigh);
    CurveSystem system(grid, nCount * static_cast<std::int32_t>(vpImages.size()), 0);
    for (std::int32_t q = 0; q < nCount; ++q) {
        if (Workspace().bCancel)
            return false;
        const auto n = static_cast<std::size_t>(q);
        AddSample(system, pRecords[vnSamples[n]], q, &vdRadiances[n]);
        Report(pProgress, static_cast<std::int32_t>(static_cast<double>(q) / nCount * 40 + 50));
    }
    AddFixedRows(system, fSmooth2, dBiweightEnergy);
    Report(pProgress, 90);
    if (!SolveLogged(system))
        return false;
    Report(pProgress, 95);
    if (Workspace().bCancel)
        return false;
    ReadCurve(grid, system.Nodes(), pfCurve);
    return true;
}
