// Reads the command line.
#include "cli/Options.h"

#include "Util/Assertion.h"
#include "Util/Numbers.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <getopt.h>
#include <sstream>
#include <string_view>

namespace {

constexpr const char* PROGRAM = "lumistrand-hdr-cli";

/// What getopt_long gives for an option that has no short form.
enum LongOnly : int {
    FORMAT = 1000,
    DEPTH,
    EXPOSURE,
    GAMMA,
    QUALITY,
    COMPRESSION,
    CURVE,
    SAVE_CURVE,
    SHUTTER,
    APERTURE,
    GROUP,
    LIST,
    GAP,
    SERIES,
    WORK_DIR,
    KEEP_WORK,
    SKIP_EXISTING,
    QUIET,
    VERBOSE
};

constexpr std::array<option, 24> LONG_OPTIONS{{
    {"output", required_argument, nullptr, 'o'},
    {"format", required_argument, nullptr, FORMAT},
    {"depth", required_argument, nullptr, DEPTH},
    {"exposure", required_argument, nullptr, EXPOSURE},
    {"gamma", required_argument, nullptr, GAMMA},
    {"quality", required_argument, nullptr, QUALITY},
    {"compression", required_argument, nullptr, COMPRESSION},
    {"curve", required_argument, nullptr, CURVE},
    {"save-curve", required_argument, nullptr, SAVE_CURVE},
    {"shutter", required_argument, nullptr, SHUTTER},
    {"aperture", required_argument, nullptr, APERTURE},
    {"group", required_argument, nullptr, GROUP},
    {"list", no_argument, nullptr, LIST},
    {"gap", required_argument, nullptr, GAP},
    {"series", required_argument, nullptr, SERIES},
    {"work-dir", required_argument, nullptr, WORK_DIR},
    {"keep-work", no_argument, nullptr, KEEP_WORK},
    {"force", no_argument, nullptr, 'f'},
    {"skip-existing", no_argument, nullptr, SKIP_EXISTING},
    {"quiet", no_argument, nullptr, QUIET},
    {"verbose", no_argument, nullptr, VERBOSE},
    {"help", no_argument, nullptr, 'h'},
    {"version", no_argument, nullptr, 'V'},
    {nullptr, 0, nullptr, 0},
}};

struct UsageError {
    std::string sText;
};

struct NamedFormat {
    std::string_view sName;
    OutputFormat format;
};

constexpr NamedFormat FORMATS[] = {
    {"exr", OutputFormat::OpenExr},   {"hdr", OutputFormat::Radiance}, {"tiff", OutputFormat::FloatTiff},
    {"tif", OutputFormat::FloatTiff}, {"jpg", OutputFormat::Jpeg},     {"jpeg", OutputFormat::Jpeg},
    {"png", OutputFormat::Png},       {"bmp", OutputFormat::Bmp},
};

constexpr std::string_view COMPRESSIONS[] = {"none", "deflate", "packbits", "lzw", "jpeg"};

std::optional<OutputFormat> FormatByName(std::string_view sName)
{
    const auto* const pFound = std::find_if(std::begin(FORMATS), std::end(FORMATS),
                                            [&](const NamedFormat& f) { return f.sName == sName; });
    return pFound == std::end(FORMATS) ? std::nullopt : std::optional(pFound->format);
}

std::size_t FileNameStart(const std::string& sPath)
{
    return sPath.rfind('/') + 1; // 0 without a folder
}

std::string LowerCaseExtension(const std::string& sPath)
{
    const std::size_t nName = FileNameStart(sPath);
    const std::size_t nDot = sPath.rfind('.');
    if (nDot == std::string::npos || nDot < nName)
        return {};
    std::string sExtension = sPath.substr(nDot + 1);
    std::transform(sExtension.begin(), sExtension.end(), sExtension.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return sExtension;
}

OutputFormat FormatOf(const std::string& sPath, const std::string& sFormat)
{
    if (sPath.empty())
        throw UsageError{"The name of an output is empty."};
    const auto format = FormatByName(sFormat.empty() ? LowerCaseExtension(sPath) : sFormat);
    if (!format && sFormat.empty())
        throw UsageError{sPath +
                         ": the extension names no format; use .exr, .hdr, .tiff, .jpg, .png or .bmp, "
                         "or give --format."};
    if (!format)
        throw UsageError{"--format " + sFormat + ": the formats are exr, hdr, tiff, jpg, png and bmp."};
    return *format;
}

/// A number within limits, both included.
double ParseInRange(const char* szOption, const std::string& sValue, double dLow, double dHigh)
{
    const auto dValue = LS::Util::ParseNumber(sValue);
    if (!dValue || *dValue < dLow || *dValue > dHigh) {
        std::ostringstream text;
        text << szOption << ": \"" << sValue << "\" is not a number from " << dLow << " to " << dHigh << '.';
        throw UsageError{text.str()};
    }
    return *dValue;
}

int ParseQuality(const std::string& sValue)
{
    const double dValue = ParseInRange("--quality", sValue, 0, 100);
    if (dValue != std::floor(dValue))
        throw UsageError{"--quality: \"" + sValue + "\" is not a whole number."};
    return static_cast<int>(dValue);
}

unsigned ParseCompression(const std::string& sValue)
{
    const auto* const pFound = std::find(std::begin(COMPRESSIONS), std::end(COMPRESSIONS), sValue);
    if (pFound == std::end(COMPRESSIONS))
        throw UsageError{"--compression: \"" + sValue +
                         "\" is none of none, deflate, packbits, lzw and jpeg."};
    return static_cast<unsigned>(pFound - std::begin(COMPRESSIONS));
}

/// @return whether TIFF outputs are tone-mapped
bool ParseDepth(const std::string& sValue)
{
    if (sValue != "8" && sValue != "32")
        throw UsageError{"--depth: \"" + sValue + "\" is neither 8 nor 32."};
    return sValue == "8";
}

std::vector<float> ParseList(const char* szOption, const std::string& sList)
{
    std::vector<float> vfValues;
    std::istringstream list(sList);
    for (std::string sItem; std::getline(list, sItem, ',');) {
        const auto dValue = LS::Util::ParseFraction(sItem);
        const float fValue = static_cast<float>(dValue.value_or(0));
        if (!(fValue > 0) || !std::isfinite(fValue))
            throw UsageError{std::string(szOption) + ": \"" + sItem +
                             "\" is not a number above 0, such as 0.5 or 1/60."};
        vfValues.push_back(fValue);
    }
    if (vfValues.empty() || sList.back() == ',')
        throw UsageError{std::string(szOption) + ": a value is missing."};
    return vfValues;
}

/// The fields of a line of --list: the name of a series, then its photographs.
std::vector<std::string> ParseSeries(const std::string& sLine)
{
    std::vector<std::string> vsFields;
    std::istringstream line(sLine);
    for (std::string sField; std::getline(line, sField, '\t');)
        vsFields.push_back(sField);
    if (vsFields.size() < 2 || std::find(vsFields.begin(), vsFields.end(), "") != vsFields.end())
        throw UsageError{"--series: \"" + sLine +
                         "\" is no line of --list: a name and images, with tabs between."};
    return vsFields;
}

bool StandsForSeries(const std::string& sPath)
{
    return sPath.find('%', FileNameStart(sPath)) != std::string::npos;
}

/// The path of one series, from a path with "%" in its file name.
std::string PathForSeries(const std::string& sPath, const std::string& sName)
{
    const std::size_t nName = FileNameStart(sPath);
    std::string sResult = sPath.substr(0, nName);
    for (const char c : sPath.substr(nName))
        sResult += c == '%' ? sName : std::string(1, c);
    return sResult;
}

void CheckCount(const char* szOption, const std::vector<float>& vfValues, std::size_t nImages)
{
    if (vfValues.size() > 1 && vfValues.size() != nImages)
        throw UsageError{std::string(szOption) + ": " + std::to_string(vfValues.size()) + " values for " +
                         std::to_string(nImages) + " images; give one for each image, or one for all."};
}

/// The option that getopt_long has just refused.
std::string FaultyOption(const std::vector<char*>& vszArguments)
{
    for (const option& known : LONG_OPTIONS)
        if (known.name && known.val == optopt)
            return std::string("--") + known.name;
    if (optopt != 0)
        return {'-', static_cast<char>(optopt)};
    return vszArguments[static_cast<std::size_t>(optind - 1)];
}

/// Collects the options as they come, and puts together what depends on several of them.
class Parser {
public:
    ParsedCommandLine Parse(const std::vector<std::string>& vsArguments);

private:
    bool Take(int nOption, const std::string& sValue);
    void TakeCurve(const std::string& sValue);
    void CheckSource() const;
    void CheckGroup() const;
    Output MakeOutput(const std::string& sPath) const;
    Options Finish();

    Options m_options;
    std::vector<std::string> m_vsOutputs;
    std::string m_sFormat;
    bool m_bLdrTiff = false;
    bool m_bHasGap = false;
    std::vector<std::string> m_vsSeries; ///< the fields of --series
    std::string m_sText;                 ///< of help or version
};

/// @return false if the option asks for a text and nothing else
bool Parser::Take(int nOption, const std::string& sValue)
{
    switch (nOption) {
    case 'o':
        m_vsOutputs.push_back(sValue);
        return true;
    case FORMAT:
        m_sFormat = sValue;
        return true;
    case DEPTH:
        m_bLdrTiff = ParseDepth(sValue);
        return true;
    case EXPOSURE:
        m_options.fExposure = static_cast<float>(ParseInRange("--exposure", sValue, -5, 5));
        return true;
    case GAMMA:
        m_options.fGamma = static_cast<float>(ParseInRange("--gamma", sValue, 1, 3));
        return true;
    case QUALITY:
        m_options.nQuality = ParseQuality(sValue);
        return true;
    case COMPRESSION:
        m_options.nCompression = ParseCompression(sValue);
        return true;
    case CURVE:
        TakeCurve(sValue);
        return true;
    case SAVE_CURVE:
        m_options.sSaveCurve = sValue;
        return true;
    case SHUTTER:
        m_options.vfShutters = ParseList("--shutter", sValue);
        return true;
    case APERTURE:
        m_options.vfApertures = ParseList("--aperture", sValue);
        return true;
    case GROUP:
        if (sValue.empty())
            throw UsageError{"--group: the name of the folder is empty."};
        m_options.sGroup = sValue;
        return true;
    case LIST:
        m_options.bList = true;
        return true;
    case GAP:
        m_options.dGap = ParseInRange("--gap", sValue, 0, 86400);
        m_bHasGap = true;
        return true;
    case SERIES:
        m_vsSeries = ParseSeries(sValue);
        return true;
    case WORK_DIR:
        m_options.sWorkFolder = sValue;
        return true;
    case KEEP_WORK:
        m_options.bKeepWork = true;
        return true;
    case 'f':
        m_options.bForce = true;
        return true;
    case SKIP_EXISTING:
        m_options.bSkipExisting = true;
        return true;
    case QUIET:
        m_options.verbosity = Verbosity::Quiet;
        return true;
    case VERBOSE:
        m_options.verbosity = Verbosity::Verbose;
        return true;
    case 'h':
        m_sText = HelpText();
        return false;
    case 'V':
        m_sText = std::string(PROGRAM) + " " LS_VERSION "\n";
        return false;
    default:
        LS_ASSERT(!"every option of the tables is known here");
    }
}

void Parser::TakeCurve(const std::string& sValue)
{
    m_options.curve = sValue == "standard"    ? CurveSource::Standard
                      : sValue == "calculate" ? CurveSource::Calculate
                                              : CurveSource::File;
    m_options.sCurve = sValue;
}

Output Parser::MakeOutput(const std::string& sPath) const
{
    const OutputFormat format = FormatOf(sPath, m_sFormat);
    return {sPath, m_bLdrTiff && format == OutputFormat::FloatTiff ? OutputFormat::LdrTiff : format};
}

/// The photographs come from one place.
void Parser::CheckSource() const
{
    const int nSources =
        int{!m_options.vsImages.empty()} + int{!m_options.sGroup.empty()} + int{!m_vsSeries.empty()};
    if (nSources == 0)
        throw UsageError{"No image is given."};
    if (nSources > 1)
        throw UsageError{"Images, --group and --series exclude each other."};
    if (m_options.sGroup.empty() && (m_options.bList || m_bHasGap))
        throw UsageError{std::string(m_bHasGap ? "--gap" : "--list") + " goes with --group."};
    if (m_options.bList && !m_vsOutputs.empty())
        throw UsageError{"--list writes nothing; leave out --output."};
}

/// What is said for all series of a folder must make sense for each.
void Parser::CheckGroup() const
{
    std::vector<std::string> vsPaths = m_vsOutputs;
    if (!m_options.sSaveCurve.empty())
        vsPaths.push_back(m_options.sSaveCurve);
    for (const std::string& sPath : vsPaths)
        if (!StandsForSeries(sPath))
            throw UsageError{sPath +
                             ": with --group an output is named with a % in place of the series' name, "
                             "such as %.exr."};
    if (m_options.vfShutters.size() > 1 || m_options.vfApertures.size() > 1)
        throw UsageError{"--shutter and --aperture take one value for all images with --group."};
}

Options Parser::Finish()
{
    Options& options = m_options;
    CheckSource();
    if (!options.sGroup.empty())
        CheckGroup();
    if (options.bList)
        return options;
    if (m_vsOutputs.empty())
        throw UsageError{"No output is given; name it with -o."};
    if (!m_sFormat.empty() && m_vsOutputs.size() > 1)
        throw UsageError{"--format goes with a single output."};
    for (const std::string& sPath : m_vsOutputs)
        options.vOutputs.push_back(MakeOutput(sPath));
    if (!m_vsSeries.empty())
        options = OptionsForSeries(options, m_vsSeries[0], {m_vsSeries.begin() + 1, m_vsSeries.end()});
    if (options.sGroup.empty()) {
        CheckCount("--shutter", options.vfShutters, options.vsImages.size());
        CheckCount("--aperture", options.vfApertures, options.vsImages.size());
    }
    if (options.bKeepWork && options.sWorkFolder.empty())
        throw UsageError{"--keep-work needs a folder to keep the files in; name it with --work-dir."};
    if (options.bForce && options.bSkipExisting)
        throw UsageError{"--force and --skip-existing exclude each other."};
    return options;
}

ParsedCommandLine Parser::Parse(const std::vector<std::string>& vsArguments)
{
    std::vector<std::string> vsCopies{PROGRAM};
    vsCopies.insert(vsCopies.end(), vsArguments.begin(), vsArguments.end());
    std::vector<char*> vszArguments;
    vszArguments.reserve(vsCopies.size() + 1);
    for (std::string& sArgument : vsCopies)
        vszArguments.push_back(sArgument.data());
    vszArguments.push_back(nullptr);
    const int nArguments = static_cast<int>(vsCopies.size());

    opterr = 0; // errors are told here
    optind = 0; // starts anew, also for a second command line in one process
    for (;;) {
        const int nOption =
            getopt_long(nArguments, vszArguments.data(), ":o:fhV", LONG_OPTIONS.data(), nullptr);
        if (nOption == -1)
            break;
        if (nOption == ':')
            throw UsageError{FaultyOption(vszArguments) + ": a value is missing."};
        if (nOption == '?')
            throw UsageError{FaultyOption(vszArguments) + ": no such option, or not one that takes a value."};
        if (!Take(nOption, optarg ? optarg : ""))
            return {std::nullopt, m_sText, ExitCode::Done};
    }
    for (int i = optind; i < nArguments; ++i)
        m_options.vsImages.emplace_back(vszArguments[static_cast<std::size_t>(i)]);
    return {Finish(), "", ExitCode::Done};
}

} // namespace

Options OptionsForSeries(const Options& options, const std::string& sName,
                         const std::vector<std::string>& vsImages)
{
    Options one = options;
    one.sGroup.clear();
    one.vsImages = vsImages;
    for (Output& output : one.vOutputs)
        output.sPath = PathForSeries(output.sPath, sName);
    one.sSaveCurve = PathForSeries(one.sSaveCurve, sName);
    return one;
}

std::optional<std::string> SeriesLine(const std::string& sName, const std::vector<std::string>& vsImages)
{
    std::vector<std::string> vsFields = vsImages;
    vsFields.insert(vsFields.begin(), sName);
    std::string sLine;
    for (const std::string& sField : vsFields) {
        if (sField.find_first_of("\t\n") != std::string::npos)
            return std::nullopt;
        sLine += (sLine.empty() ? "" : "\t") + sField;
    }
    return sLine;
}

ParsedCommandLine ParseCommandLine(const std::vector<std::string>& vsArguments)
{
    try {
        return Parser().Parse(vsArguments);
    } catch (const UsageError& error) {
        return {std::nullopt, error.sText, ExitCode::Usage};
    }
}

std::string HelpText()
{
    return R"(Usage: lumistrand-hdr-cli [options] IMAGE...
       lumistrand-hdr-cli [options] --group DIR
       lumistrand-hdr-cli [options] --series LINE

Merges a bracketed series of photographs into one high-dynamic-range image, or
each series of a folder into one.

  -o, --output FILE   what to write: .exr, .hdr and .tif/.tiff hold the merged
                      values; .jpg, .png and .bmp are tone-mapped pictures; may
                      be given several times
      --format NAME   exr, hdr, tiff, jpg, png or bmp, in place of the extension
      --depth 8|32    8 makes a .tif a tone-mapped picture
      --curve CURVE   the camera's response: standard (the default), calculate
                      (from the series itself), or a .crv file
      --save-curve FILE
                      writes the curves that made the merge to a .crv file
      --shutter LIST  shutter times in seconds, such as 1/60,1/15,1/4: one for
                      each image in the order given here, or one for all
      --aperture LIST f-numbers, likewise
      --exposure N    of tone-mapped pictures, in stops from -5 to 5; 0
      --gamma N       of tone-mapped pictures, from 1.0 to 3.0; 2.2
      --quality N     of .jpg pictures, from 0 to 100; 95
      --compression NAME
                      of tone-mapped .tif pictures: none, deflate, packbits (the
                      default), lzw or jpeg
      --group DIR     merges each series of a folder: .jpg and .tif files of one
                      camera and size, taken in one go, no exposure twice. A %
                      in the file names of -o and --save-curve stands for the
                      series: the name of its first photograph, without .jpg
      --list          with --group: writes no image but a line for each series:
                      its name and its photographs, with tabs between
      --gap SECONDS   with --group: the longest pause within a series; 5
      --series LINE   merges the series of such a line
      --work-dir DIR  where working files live, 4 bytes a pixel for each image
                      and 12 bytes a pixel; else in the temporary directory
      --keep-work     keeps the working files, in DIR itself
  -f, --force         replaces existing outputs
      --skip-existing does nothing if all outputs exist
      --quiet         prints nothing but errors
      --verbose       prints exposures, sizes, curves, times and memory
  -h, --help          prints this text
  -V, --version       prints the version

Shutter time and aperture come from the Exif data of each image unless an option
gives them; no two images may share both. All images must have the same size.
They are merged in the order of their file names. What is written appears under
its name only when it is complete.

With --group, single shots and files that are no usable photographs are told and
passed over, and a series that fails doesn't keep the others from being merged.

Exit codes: 0 done, 1 wrong command line, 2 unusable input, 3 merge failed,
4 output can't be written, 5 some series of a folder failed, 130 cancelled.
)";
}
