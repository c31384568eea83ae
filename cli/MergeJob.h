// One run of the command line program, from photographs to files.
#pragma once

#include "cli/Console.h"
#include "cli/ExitCode.h"
#include "cli/Options.h"
#include "cli/Outputs.h"
#include "cli/Series.h"
#include "cli/WorkFolder.h"
#include "engine/OwnedCurves.h"

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

struct RecoveryReport;

/// Does what the options ask for. Holds one decoded image at a time.
///
/// On any failure or cancel nothing is left behind, neither a half file nor a working file. At most one job
/// per process, since it redirects the cache folder.
class MergeJob {
public:
    MergeJob(const Options& options, Console& console);
    MergeJob(const MergeJob&) = delete;
    MergeJob& operator=(const MergeJob&) = delete;
    ~MergeJob();

    ExitCode Run();

private:
    ExitCode ReadSeries();
    ExitCode ReadCurve();
    ExitCode CheckNumberForCurve();
    ExitCode MakeFolder();
    ExitCode ConvertImages();
    ExitCode RecoverCurves();
    ExitCode MergeImages();
    ExitCode WriteOutputs();
    ExitCode KeepWork();
    ExitCode Publish();

    ExitCode CheckKeptNames();
    ExitCode WriteOutput(const Output& output, ProgbarSetter& progress);
    ExitCode WriteCurve();
    std::string WriteHdr(const Output& output, LS::Util::ReplacedFile& file, ProgbarSetter& progress);
    std::string WriteLdr(const Output& output, LS::Util::ReplacedFile& file, ProgbarSetter& progress);
    std::string Reason() const; ///< the engine's, or words that stand for it
    ExitCode ConvertImage(std::size_t i, ProgbarSetter& progress);
    void TellSeries();
    void TellRecovery(const RecoveryReport& report);
    void TellSummary();

    const Options& m_options;
    Console& m_console;
    Series m_series;
    WorkFolder m_folder; // outlives the outputs and the curves
    Outputs m_outputs;
    OwnedCurves m_curves;
    std::vector<std::wstring> m_vsCacheFiles;             ///< one per image, in the order of the series
    std::int32_t m_nRecovered = 0;                        ///< where the progress bar stands before the merge
    std::string m_sReason;                                ///< the latest line that the engine logged
    std::vector<std::pair<const char*, double>> m_vTimes; ///< seconds per step
};
