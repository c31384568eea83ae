// The command line as a value.
#pragma once

#include "cli/ExitCode.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// The first three are the engine's numbers of its 32-bit formats, the others are tone-mapped pictures.
enum class OutputFormat : std::int32_t { OpenExr = 0, Radiance = 1, FloatTiff = 2, Jpeg, Png, Bmp, LdrTiff };

inline bool IsToneMapped(OutputFormat format)
{
    return format > OutputFormat::FloatTiff;
}

enum class CurveSource { Standard, File, Calculate };

struct Output {
    std::string sPath; ///< in the file system's bytes
    OutputFormat format;
};

enum class Verbosity { Quiet, Normal, Verbose };

struct Options {
    std::vector<std::string> vsImages; ///< in the order of the command line, in the file system's bytes
    std::vector<std::string> vsKept;   ///< further photographs that no output may replace
    std::vector<Output> vOutputs;      ///< at least one, unless the series are only listed
    std::string sGroup;                ///< the folder whose series are merged, in place of images
    bool bList = false;                ///< lists the series of that folder
    double dGap = 5;                   ///< the longest pause within a series of that folder, in seconds
    CurveSource curve = CurveSource::Standard;
    std::string sCurve;             ///< the curve file
    std::string sSaveCurve;         ///< empty for none
    float fExposure = 0.0F;         ///< of tone-mapped pictures, in stops
    float fGamma = 2.2F;            ///< of the display that they are for
    int nQuality = 95;              ///< of JPEG pictures
    unsigned nCompression = 2;      ///< of tone-mapped TIFF pictures, as image/tiff takes it
    std::vector<float> vfShutters;  ///< none, one for all, or one per image
    std::vector<float> vfApertures; ///< likewise
    std::string sWorkFolder;        ///< empty for the temporary directory
    bool bKeepWork = false;
    bool bForce = false;
    bool bSkipExisting = false; ///< does nothing where all outputs exist
    Verbosity verbosity = Verbosity::Normal;
};

/// What a command line asks for: work, or only a text.
struct ParsedCommandLine {
    std::optional<Options> options; ///< absent where the text is all
    std::string sText;              ///< help, version, or what is wrong
    ExitCode code = ExitCode::Done; ///< Usage if something is wrong
};

/// Puts the photographs of one series in the place of a folder, and its name in the place of each "%" in the
/// file names of the outputs.
Options OptionsForSeries(const Options& options, const std::string& sName,
                         const std::vector<std::string>& vsImages);

/// A series as one line without its end: its name and its photographs, with tabs between them. The option
/// --series takes it back. @return nothing for a name with a tab or a line feed in it
std::optional<std::string> SeriesLine(const std::string& sName, const std::vector<std::string>& vsImages);

/// Reads the arguments behind the program's name. Options and images may be mixed.
ParsedCommandLine ParseCommandLine(const std::vector<std::string>& vsArguments);

/// The help text.
std::string HelpText();
