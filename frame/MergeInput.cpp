// What a merge takes from the source list.
#include "frame/MergeInput.h"

#include "Util/Paths.h"
#include "engine/ProgbarSetter.h"
#include "image/FileBytes.h"
#include "image/SourceCache.h"

#include <wx/filefn.h>
#include <wx/image.h>

namespace {

constexpr float GAIN = 3.0F;            // of every image: the list has no column for it
constexpr float NEUTRAL_DENSITY = 0.0F; // nor for a filter

/// Calls take(record) for each ticked record, in order.
template <typename Take> void ForTicked(const SourceRecords& records, const Take& take)
{
    for (const auto& record : records)
        if (record && record->IsEnabled())
            take(*record.get());
}

void Convert(lsImage& record, std::int32_t i, std::int32_t nRecords, ProgbarSetter& progress)
{
    if (wxFileExists(record.GetCacheFile())) {
        progress.SetPercent(ConversionPercent::Skipped(i, nRecords));
        return;
    }
    const wxImage* const image = record.LoadPixels();
    if (!image)
        return; // the cache has told it
    progress.SetPercent(ConversionPercent::Decoded(i, nRecords));
    const auto rowDone = [&](std::int32_t y) {
        progress.SetPercent(ConversionPercent::Row(i, nRecords, y, record.GetHeight()));
        return true;
    };
    WriteSourceCacheFile(*image, FileBytes(record.GetCacheFile()), rowDone);
}

} // namespace

MergeInput CollectMergeInput(const SourceRecords& records)
{
    MergeInput input;
    ForTicked(records, [&input](const lsImage& record) {
        input.vsLDRFiles.push_back(record.GetCacheFile().ToStdWstring());
        input.vfShutters.push_back(record.GetExposureTime());
        input.vfStops.push_back(record.GetFNumber());
        input.vfGains.push_back(GAIN);
        input.vfNDs.push_back(NEUTRAL_DENSITY);
    });
    return input;
}

std::vector<ExposureSetting> TickedExposures(const SourceRecords& records)
{
    std::vector<ExposureSetting> exposures;
    ForTicked(records, [&exposures](const lsImage& record) {
        exposures.push_back({record.GetExposureTime(), record.GetFNumber()});
    });
    return exposures;
}

std::vector<PixelSize> TickedSizes(const SourceRecords& records)
{
    std::vector<PixelSize> sizes;
    ForTicked(records, [&sizes](const lsImage& record) {
        sizes.push_back({record.GetWidth(), record.GetHeight()});
    });
    return sizes;
}

void ConvertSources(const SourceRecords& records, ProgbarSetter& progress)
{
    const auto nRecords = static_cast<std::int32_t>(records.size());
    for (std::int32_t i = 0; i < nRecords; ++i) {
        const auto& record = records[static_cast<std::size_t>(i)];
        if (record && record->IsEnabled())
            Convert(*record.get(), i, nRecords, progress);
    }
}
