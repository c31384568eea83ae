// Exposures, order and names of a series.
#include "cli/Series.h"

#include "Util/Paths.h"
#include "Util/RegularFile.h"
#include "image/ExifReader.h"
#include "image/SeriesChecks.h"

#include <algorithm>
#include <cmath>
#include <set>

namespace {

bool IsUsable(float fValue)
{
    return std::isfinite(fValue) && fValue > 0;
}

float ValueFor(std::size_t i, const std::vector<float>& vfValues)
{
    return vfValues.size() == 1 ? vfValues[0] : vfValues[i];
}

class SeriesBuilder {
public:
    SeriesBuilder(const Options& options, Console& console) : m_options(options), m_console(console) {}

    /// @return false if the image is unusable, which is told
    bool Add(std::size_t i, Series& series)
    {
        SeriesImage image;
        image.sPath = m_options.vsImages[i];
        std::string sReason;
        if (!LS::Util::IsRegularFile(image.sPath, sReason)) {
            m_console.Error(image.sPath, sReason);
            return false;
        }
        TakeExposure(i, image);
        const bool bUsable = CheckExposure(image);
        series.push_back(image);
        return bUsable;
    }

private:
    void TakeExposure(std::size_t i, SeriesImage& image) const
    {
        ExposureValues values;
        values.exposureTime = values.fNumber = 0; // so that a missing value is seen
        if (m_options.vfShutters.empty() || m_options.vfApertures.empty())
            ReadExif(image.sPath, values); // a fault leaves values that the check refuses
        image.fShutter =
            m_options.vfShutters.empty() ? values.exposureTime : ValueFor(i, m_options.vfShutters);
        image.fStop = m_options.vfApertures.empty() ? values.fNumber : ValueFor(i, m_options.vfApertures);
    }

    bool CheckExposure(const SeriesImage& image)
    {
        const std::string sFault = ExposureFault(image.fShutter, image.fStop);
        if (!sFault.empty())
            m_console.Error(image.sPath, sFault);
        return sFault.empty();
    }

    const Options& m_options;
    Console& m_console;
};

bool ComesBefore(const SeriesImage& a, const SeriesImage& b)
{
    return FileNameLess(LS::Util::WidePath(a.sPath), LS::Util::WidePath(b.sPath));
}

bool TellEqualExposures(const Series& series, Console& console)
{
    std::vector<ExposureSetting> vSettings;
    for (const SeriesImage& image : series)
        vSettings.push_back({image.fShutter, image.fStop});
    const auto pair = FindEqualExposures(vSettings);
    if (!pair)
        return false;
    console.Error(series[pair->second].sPath,
                  Formatted("has the same exposure (%s, f/%g) as %s; a series needs different ones",
                            ShutterText(series[pair->second].fShutter).c_str(),
                            static_cast<double>(series[pair->second].fStop),
                            series[pair->first].sPath.c_str()));
    return true;
}

void NameWorkingFiles(Series& series)
{
    std::set<std::string> taken;
    for (SeriesImage& image : series) {
        const std::string sName = image.sPath.substr(image.sPath.rfind('/') + 1);
        image.sCacheName = sName + ".tmp";
        for (int i = 2; !taken.insert(image.sCacheName).second; ++i)
            image.sCacheName = sName + "." + std::to_string(i) + ".tmp";
    }
}

} // namespace

ExitCode MakeSeries(const Options& options, Console& console, Series& series)
{
    SeriesBuilder builder(options, console);
    bool bUsable = true;
    for (std::size_t i = 0; i < options.vsImages.size(); ++i)
        bUsable = builder.Add(i, series) && bUsable;
    if (!bUsable)
        return ExitCode::Input;

    std::stable_sort(series.begin(), series.end(), ComesBefore);
    if (TellEqualExposures(series, console))
        return ExitCode::Input;
    NameWorkingFiles(series);
    return ExitCode::Done;
}

ExitCode CheckSize(const Series& series, std::size_t iLatest, Console& console)
{
    const SeriesImage& first = series.front();
    const SeriesImage& latest = series[iLatest];
    const PixelSize sizes[] = {{first.nWidth, first.nHeight}, {latest.nWidth, latest.nHeight}};
    if (!FindDifferentSizes(sizes))
        return ExitCode::Done;
    return console.Fail(ExitCode::Input, latest.sPath,
                        Formatted("has %d x %d pixels, but %s has %d x %d; a series needs images of one size",
                                  latest.nWidth, latest.nHeight, first.sPath.c_str(), first.nWidth,
                                  first.nHeight));
}

std::string ExposureFault(float fShutter, float fStop)
{
    const bool bShutter = IsUsable(fShutter), bStop = IsUsable(fStop);
    if (!bShutter && !bStop)
        return "no usable exposure time and aperture in its Exif data; give them with --shutter and "
               "--aperture";
    if (!bShutter)
        return "no usable exposure time in its Exif data; give it with --shutter";
    return bStop ? "" : "no usable aperture in its Exif data; give it with --aperture";
}

std::string ShutterText(float fShutter)
{
    const double dShutter = fShutter;
    const double dDenominator = std::round(1 / dShutter);
    const bool bIsFraction = dShutter < 0.4 && std::fabs(dDenominator * dShutter - 1) < 0.01;
    return bIsFraction ? Formatted("1/%.0f s", dDenominator) : Formatted("%g s", dShutter);
}
