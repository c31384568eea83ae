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
    WORK_DIR,
    KEEP_WORK,
    QUIET,
    VERBOSE
};

constexpr std::array<option, 19> LONG_OPTIONS{{
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
    {"work-dir", required_argument, nullptr, WORK_DIR},
    {"keep-work", no_argument, nullptr, KEEP_WORK},
    {"force", no_argument, nullptr, 'f'},
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

std::string LowerCaseExtension(const std::string& sPath)
{
    const std::size_t nName = sPath.rfind('/') + 1; // 0 without a folder
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
    Output MakeOutput(const std::string& sPath) const;
    Options Finish();

    Options m_options;
    std::vector<std::string> m_vsOutputs;
    std::string m_sFormat;
    bool m_bLdrTiff = false;
    std::string m_sText; ///< of help or version
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
    case WORK_DIR:
        m_options.sWorkFolder = sValue;
        return true;
    case KEEP_WORK:
        m_options.bKeepWork = true;
        return true;
    case 'f':
        m_options.bForce = true;
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

Options Parser::Finish()
{
    Options& options = m_options;
    if (options.vsImages.empty())
        throw UsageError{"No image is given."};
    if (m_vsOutputs.empty())
        throw UsageError{"No output is given; name it with -o."};
    if (!m_sFormat.empty() && m_vsOutputs.size() > 1)
        throw UsageError{"--format goes with a single output."};
    for (const std::string& sPath : m_vsOutputs)
        options.vOutputs.push_back(MakeOutput(sPath));
    CheckCount("--shutter", options.vfShutters, options.vsImages.size());
    CheckCount("--aperture", options.vfApertures, options.vsImages.size());
    if (options.bKeepWork && options.sWorkFolder.empty())
        throw UsageError{"--keep-work needs a folder to keep the files in; name it with --work-dir."};
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

Merges a bracketed series of photographs into one high-dynamic-range image.

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
      --work-dir DIR  where working files live, 4 bytes a pixel for each image
                      and 12 bytes a pixel; else in the temporary directory
      --keep-work     keeps the working files, in DIR itself
  -f, --force         replaces existing outputs
      --quiet         prints nothing but errors
      --verbose       prints exposures, sizes, curves, times and memory
  -h, --help          prints this text
  -V, --version       prints the version

Shutter time and aperture come from the Exif data of each image unless an option
gives them; no two images may share both. All images must have the same size.
They are merged in the order of their file names. What is written appears under
its name only when it is complete.

Exit codes: 0 done, 1 wrong command line, 2 unusable input, 3 merge failed,
4 output can't be written, 130 cancelled.
)";
}
