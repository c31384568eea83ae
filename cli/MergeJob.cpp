// The steps of a merge, in their order.
#include "cli/MergeJob.h"

#include "Util/FailureLog.h"
#include "Util/Paths.h"
#include "Util/PixelBuffer.h"
#include "cli/Cancel.h"
#include "engine/ExposureMerge.h"
#include "engine/HDRRoutine.h"
#include "engine/HDRWorkspace.h"
#include "engine/RecoveryReport.h"
#include "engine/ResponseCurve.h"
#include "image/ImageDecoder.h"
#include "image/LdrSave.h"
#include "image/SourceCache.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <new>
#include <sys/resource.h>
#include <sys/stat.h>

namespace {

// Shares of the progress bar.
constexpr std::int32_t CONVERTED = 30, RECOVERED = 50, MERGED = 65;

constexpr std::uintmax_t CURVE_FILE_BYTES = CURVE_CHANNELS * CURVE_ENTRIES * sizeof(float);

constexpr float GAIN = 3.0F, NEUTRAL_DENSITY = 0.0F; // what the window program gives the engine too

std::uintmax_t FileSize(const std::string& sPath)
{
    struct stat status = {};
    return stat(sPath.c_str(), &status) == 0 ? static_cast<std::uintmax_t>(status.st_size) : 0;
}

double PeakMegabytes()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_maxrss) / 1024;
}

std::vector<float> Constants(const Series& series, float fValue)
{
    return std::vector<float>(series.size(), fValue);
}

LdrFormat LdrFormatOf(OutputFormat format)
{
    switch (format) {
    case OutputFormat::Jpeg:
        return LdrFormat::Jpeg;
    case OutputFormat::Png:
        return LdrFormat::Png;
    case OutputFormat::Bmp:
        return LdrFormat::Bmp;
    default:
        return LdrFormat::Tiff;
    }
}

template <typename Member> std::vector<float> Values(const Series& series, Member member)
{
    std::vector<float> vfValues;
    for (const SeriesImage& image : series)
        vfValues.push_back(image.*member);
    return vfValues;
}

} // namespace

MergeJob::MergeJob(const Options& options, Console& console)
    : m_options(options), m_console(console), m_outputs(options, console)
{
    LS::Util::SetFailureSink([this](const std::string& sLine) { m_sReason = sLine; });
}

MergeJob::~MergeJob()
{
    LS::Util::SetFailureSink({});
    try {
        ResetWorkspace(); // while its folder still exists
    } catch (const std::bad_alloc&) {
        return; // the folder is about to go with all that it holds
    }
}

ExitCode MergeJob::Run()
{
    if (m_options.bSkipExisting && m_outputs.AllExist()) {
        m_console.Say(m_options.vOutputs[0].sPath + ": exists already, passed over");
        return ExitCode::Done;
    }
    const struct {
        const char* szName;
        ExitCode (MergeJob::*pDo)();
    } steps[] = {
        {"exposures", &MergeJob::ReadSeries},      {"curve", &MergeJob::ReadCurve},
        {"working folder", &MergeJob::MakeFolder}, {"conversion", &MergeJob::ConvertImages},
        {"recovery", &MergeJob::RecoverCurves},    {"merge", &MergeJob::MergeImages},
        {"saving", &MergeJob::WriteOutputs},       {"keeping", &MergeJob::KeepWork},
        {"renaming", &MergeJob::Publish},
    };
    for (const auto& step : steps) {
        const auto start = std::chrono::steady_clock::now();
        const ExitCode code = (this->*step.pDo)();
        if (code != ExitCode::Done)
            return code;
        if (CancelRequested() && step.pDo != &MergeJob::Publish)
            return m_console.Fail(ExitCode::Cancelled, "", "");
        const std::chrono::duration<double> spent = std::chrono::steady_clock::now() - start;
        m_vTimes.emplace_back(step.szName, spent.count());
    }
    TellSummary();
    return ExitCode::Done;
}

ExitCode MergeJob::ReadSeries()
{
    const ExitCode code = MakeSeries(m_options, m_console, m_series);
    return code == ExitCode::Done ? m_outputs.Check() : code;
}

ExitCode MergeJob::ReadCurve()
{
    if (m_options.curve == CurveSource::Calculate)
        return CheckNumberForCurve();
    if (m_options.curve == CurveSource::Standard)
        return LoadCurves(nullptr, m_curves.Get()) ? ExitCode::Done : ExitCode::Input;

    const std::string& sPath = m_options.sCurve;
    if (!LoadCurves(sPath.c_str(), m_curves.Get()))
        return m_console.Fail(ExitCode::Input, "", m_sReason);
    if (FileSize(sPath) != CURVE_FILE_BYTES)
        return m_console.Fail(ExitCode::Input, sPath, "not a curve file, which has 3072 bytes");
    for (const float* pCurve : m_curves.Get())
        if (!std::all_of(pCurve, pCurve + CURVE_ENTRIES, [](float f) { return std::isfinite(f); }))
            return m_console.Fail(ExitCode::Input, sPath, "not a curve file: a value is not a finite number");
    return ExitCode::Done;
}

ExitCode MergeJob::CheckNumberForCurve()
{
    if (m_series.size() < 2)
        return m_console.Fail(ExitCode::Input, "", "--curve calculate needs at least two images");
    if (m_series.size() > MOST_RECOVERED_IMAGES)
        return m_console.Fail(ExitCode::Input, "",
                              Formatted("--curve calculate takes at most %zu images", MOST_RECOVERED_IMAGES));
    return ExitCode::Done;
}

ExitCode MergeJob::MakeFolder()
{
    const std::string sFault = m_folder.Create(m_options.sWorkFolder);
    if (!sFault.empty())
        return m_console.Fail(ExitCode::Merge, "", sFault);
    return m_options.bKeepWork ? CheckKeptNames() : ExitCode::Done;
}

ExitCode MergeJob::ConvertImages()
{
    const ProgbarSetter bar(&m_console, 0, 0, 100);
    ProgbarSetter progress(&bar, 0, CONVERTED);
    for (std::size_t i = 0; i < m_series.size(); ++i) {
        ExitCode code = ConvertImage(i, progress);
        if (code == ExitCode::Done)
            code = CheckSize(m_series, i, m_console);
        if (code != ExitCode::Done)
            return code;
    }
    TellSeries();
    return ExitCode::Done;
}

ExitCode MergeJob::ConvertImage(std::size_t i, ProgbarSetter& progress)
{
    SeriesImage& source = m_series[i];
    const auto nIndex = static_cast<std::int32_t>(i);
    const auto nCount = static_cast<std::int32_t>(m_series.size());
    const DecodedImage decoded = DecodeImage(source.sPath);
    if (decoded.outcome != DecodeOutcome::Decoded)
        return m_console.Fail(ExitCode::Input, source.sPath, decoded.sReason);
    source.nWidth = decoded.image.GetWidth();
    source.nHeight = decoded.image.GetHeight();
    progress.SetPercent(ConversionPercent::Decoded(nIndex, nCount));

    const auto rowDone = [&](std::int32_t y) {
        progress.SetPercent(ConversionPercent::Row(nIndex, nCount, y, source.nHeight));
        return !CancelRequested();
    };
    m_sReason.clear();
    if (!WriteSourceCacheFile(decoded.image, m_folder.File(source.sCacheName), rowDone))
        return m_console.Fail(ExitCode::Merge, "", Reason());
    return ExitCode::Done;
}

ExitCode MergeJob::RecoverCurves()
{
    ResetWorkspace();
    if (CancelRequested()) // the reset has cleared the flag
        RequestCancel();
    for (const SeriesImage& image : m_series)
        m_vsCacheFiles.push_back(LS::Util::WidePath(m_folder.File(image.sCacheName)));
    m_nRecovered = CONVERTED;
    if (m_options.curve != CurveSource::Calculate)
        return ExitCode::Done;

    m_nRecovered = RECOVERED;
    const ProgbarSetter bar(&m_console, CONVERTED, 0, 100);
    ProgbarSetter progress(&bar, CONVERTED, RECOVERED);
    RecoveryReport report;
    m_sReason.clear();
    const SeriesImage& first = m_series.front();
    const bool bRecovered =
        CalculateCurves(m_vsCacheFiles, first.nWidth, first.nHeight, Values(m_series, &SeriesImage::fShutter),
                        Values(m_series, &SeriesImage::fStop), Constants(m_series, GAIN),
                        Constants(m_series, NEUTRAL_DENSITY), m_curves.Get(), &progress, &report);
    TellRecovery(report);
    return bRecovered ? ExitCode::Done : m_console.Fail(ExitCode::Merge, "", Reason());
}

ExitCode MergeJob::MergeImages()
{
    const ProgbarSetter bar(&m_console, m_nRecovered, 0, 100);
    ProgbarSetter progress(&bar, m_nRecovered, MERGED);
    m_sReason.clear();
    const SeriesImage& first = m_series.front();
    if (!MergeExposures(m_vsCacheFiles, first.nWidth, first.nHeight, Values(m_series, &SeriesImage::fShutter),
                        Values(m_series, &SeriesImage::fStop), Constants(m_series, GAIN),
                        Constants(m_series, NEUTRAL_DENSITY), m_curves.Get(), &progress, &Workspace()))
        return m_console.Fail(ExitCode::Merge, "", Reason());
    m_curves.Release();
    return ExitCode::Done;
}

ExitCode MergeJob::WriteOutputs()
{
    const ProgbarSetter bar(&m_console, MERGED, 0, 100);
    const auto nOutputs = static_cast<std::int32_t>(m_options.vOutputs.size());
    for (std::int32_t i = 0; i < nOutputs; ++i) {
        ProgbarSetter progress(&bar, MERGED + (100 - MERGED) * i / nOutputs,
                               MERGED + (100 - MERGED) * (i + 1) / nOutputs);
        const ExitCode code = WriteOutput(m_options.vOutputs[static_cast<std::size_t>(i)], progress);
        if (code != ExitCode::Done)
            return code;
    }
    return m_options.sSaveCurve.empty() ? ExitCode::Done : WriteCurve();
}

ExitCode MergeJob::WriteOutput(const Output& output, ProgbarSetter& progress)
{
    return m_outputs.Write(output.sPath, [&](LS::Util::ReplacedFile& file) {
        m_sReason.clear();
        return IsToneMapped(output.format) ? WriteLdr(output, file, progress)
                                           : WriteHdr(output, file, progress);
    });
}

std::string MergeJob::WriteHdr(const Output& output, LS::Util::ReplacedFile& file, ProgbarSetter& progress)
{
    const auto nFormat = static_cast<std::int32_t>(output.format);
    return SaveHDRFile(file.Path().c_str(), nFormat, &progress) ? "" : Reason();
}

std::string MergeJob::WriteLdr(const Output& output, LS::Util::ReplacedFile& file, ProgbarSetter& progress)
{
    std::int32_t nWidth = 0, nHeight = 0;
    LS::Util::PixelBuffer pPixels(
        ToneMapFull(m_options.fExposure, m_options.fGamma, &nWidth, &nHeight, &progress));
    if (!pPixels)
        return Reason();
    wxImage image(nWidth, nHeight, pPixels.release());
    const LdrOptions options{m_options.nQuality, m_options.nCompression, false};
    return ::WriteLdr(image, file, LdrFormatOf(output.format), options) == LdrOutcome::Saved ? "" : Reason();
}

ExitCode MergeJob::WriteCurve()
{
    return m_outputs.Write(m_options.sSaveCurve, [this](const LS::Util::ReplacedFile& file) {
        m_sReason.clear();
        const bool bWhole = SaveCurves(file.Path().c_str()) && FileSize(file.Path()) == CURVE_FILE_BYTES;
        return bWhole ? "" : Reason();
    });
}

std::string MergeJob::Reason() const
{
    return m_sReason.empty() ? "failed without a reason given" : m_sReason;
}

/// Before the work: nothing that exists in the folder is replaced, since it may be a photograph.
ExitCode MergeJob::CheckKeptNames()
{
    for (const SeriesImage& image : m_series)
        if (!m_folder.CanKeep(image.sCacheName))
            return m_console.Fail(ExitCode::Write, m_options.sWorkFolder + "/" + image.sCacheName,
                                  "exists already; please move it or name another folder");
    return ExitCode::Done;
}

ExitCode MergeJob::KeepWork()
{
    if (!m_options.bKeepWork)
        return ExitCode::Done;
    std::vector<std::string> vsNames;
    for (const SeriesImage& image : m_series)
        vsNames.push_back(image.sCacheName);
    vsNames.push_back(LS::Util::NarrowPath(LS::Util::FileNameFromPath(Workspace().sHDRFile)));
    for (const std::string& sName : vsNames)
        if (const std::string sFault = m_folder.Keep(sName); !sFault.empty())
            return m_console.Fail(ExitCode::Write, "", sFault);
    return ExitCode::Done;
}

ExitCode MergeJob::Publish()
{
    return m_outputs.Publish();
}

void MergeJob::TellSeries()
{
    std::vector<float> vfExposures;
    ExposureList(Values(m_series, &SeriesImage::fShutter), Values(m_series, &SeriesImage::fStop),
                 vfExposures);
    for (std::size_t i = 0; i < m_series.size(); ++i) {
        const SeriesImage& image = m_series[i];
        m_console.Detail(Formatted("%s: %d x %d, %s, f/%g, E = %g", image.sPath.c_str(), image.nWidth,
                                   image.nHeight, ShutterText(image.fShutter).c_str(),
                                   static_cast<double>(image.fStop), static_cast<double>(vfExposures[i])));
    }
}

void MergeJob::TellRecovery(const RecoveryReport& report)
{
    for (std::size_t i = 0; i < CURVE_CHANNELS; ++i) {
        const RecoveryReport::Channel& channel = report.channels[i];
        m_console.Detail(Formatted(
            "%-5s curve: values %d to %d, %d samples; statistics %.3f s, selection %.3f s, "
            "solves %.3f s and %.3f s",
            CHANNEL_NAMES[i], channel.nLow, channel.nHigh, channel.nSamples, channel.dStatisticsSeconds,
            channel.dSelectionSeconds, channel.dFirstSolveSeconds, channel.dSecondSolveSeconds));
    }
}

void MergeJob::TellSummary()
{
    const HDRWorkspace& workspace = Workspace();
    m_console.Detail(Formatted("merged %zu images: %d x %d, %.1f megapixels; preview %d x %d",
                               m_series.size(), workspace.nWidth, workspace.nHeight,
                               static_cast<double>(workspace.nWidth) * workspace.nHeight / 1e6,
                               workspace.nScaledWidth, workspace.nScaledHeight));
    for (const auto& [szName, dSeconds] : m_vTimes)
        m_console.Detail(Formatted("%-14s %8.3f s", szName, dSeconds));
    m_console.Detail(Formatted("peak memory    %8.1f MB", PeakMegabytes()));
    for (const Output& output : m_options.vOutputs)
        m_console.Say(Formatted("%s: %d x %d, %zu images, %.1f MB", output.sPath.c_str(), workspace.nWidth,
                                workspace.nHeight, m_series.size(),
                                static_cast<double>(FileSize(output.sPath)) / 1e6));
}
