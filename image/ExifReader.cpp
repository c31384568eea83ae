// Exposure values of a photograph, and when and with what it was taken, from its Exif data.
#include "image/ExifReader.h"

#include "image/ExifTime.h"
#include "image/Exiv2Messages.h"
#include "image/Exiv2Versions.h"
#include "image/MetadataFile.h"

#include <exiv2/exif.hpp>
#include <exiv2/image.hpp>

#include <exception>
#include <stdexcept>
#include <utility>

namespace {

/// A tag of a photograph, or none, which reads as -1.
Exiv2::Exifdatum FindTag(const Exiv2::ExifData& exifData, const char* szKey)
{
    const Exiv2::ExifKey key(szKey);
    const auto found = exifData.findKey(key);
    if (found == exifData.end())
        return Exiv2::Exifdatum(key);
    if (found->count() == 0)
        throw std::out_of_range(std::string(szKey) + " holds no value");
    return *found;
}

void ReadTags(const Exiv2::ExifData& exifData, bool bExchangesSides, ExposureValues& values)
{
    const auto integer = [&](const char* szKey) {
        return static_cast<std::int32_t>(IntegerOf(FindTag(exifData, szKey)));
    };
    const auto number = [&](const char* szKey) { return FindTag(exifData, szKey).toFloat(0); };

    values.width = integer("Exif.Photo.PixelXDimension");
    values.height = integer("Exif.Photo.PixelYDimension");
    if (bExchangesSides)
        std::swap(values.width, values.height);
    values.exposureTime = number("Exif.Photo.ExposureTime");
    values.fNumber = number("Exif.Photo.FNumber");
    values.exposureBias = number("Exif.Photo.ExposureBiasValue");
}

/// The text of a tag, or nothing.
std::string Text(const Exiv2::ExifData& exifData, const char* szKey)
{
    const auto found = exifData.findKey(Exiv2::ExifKey(szKey));
    return found == exifData.end() ? std::string() : found->toString();
}

std::optional<std::chrono::microseconds> ReadTime(const Exiv2::ExifData& exifData)
{
    constexpr struct {
        const char* szDate;
        const char* szFraction;
    } TAGS[] = {
        {"Exif.Photo.DateTimeOriginal", "Exif.Photo.SubSecTimeOriginal"},
        {"Exif.Photo.DateTimeDigitized", "Exif.Photo.SubSecTimeDigitized"},
        {"Exif.Image.DateTime", "Exif.Photo.SubSecTime"},
    };
    for (const auto& tags : TAGS)
        if (const auto taken = ParseExifTime(Text(exifData, tags.szDate), Text(exifData, tags.szFraction)))
            return taken;
    return std::nullopt;
}

void ReadShotValues(const Exiv2::Image& image, bool bExchangesSides, ShotValues& shot)
{
    const Exiv2::ExifData& exifData = image.exifData();
    ReadTags(exifData, bExchangesSides, shot.exposure);
    for (const char* szKey : {"Exif.Image.Make", "Exif.Image.Model", "Exif.Photo.BodySerialNumber"})
        shot.sCamera += Text(exifData, szKey) + '\n';
    shot.width = image.pixelWidth();
    shot.height = image.pixelHeight();
    if (bExchangesSides)
        std::swap(shot.width, shot.height);
    shot.taken = ReadTime(exifData);
}

/// Opens a photograph and hands it to a function, if it has Exif data, and whether its sides are exchanged
/// when it is decoded.
template <typename Take> ExifOutcome ReadFile(const std::string& sPath, std::string& sReason, Take take)
{
    const Exiv2Messages messages;
    try {
        const auto pImage = OpenMetadata(sPath, sReason);
        if (!pImage)
            return ExifOutcome::Failed;
        if (pImage->exifData().empty()) {
            sReason = messages.Errors();
            return ExifOutcome::NoExif;
        }
        take(*pImage, ExchangesSides(OrientationOf(pImage->exifData())));
        return ExifOutcome::Read;
    } catch (const std::exception& fault) {
        sReason = fault.what();
        return ExifOutcome::Failed;
    }
}

} // namespace

ExifOutcome ReadExif(const std::string& sPath, ExposureValues& values, std::string* psReason)
{
    std::string sReason;
    const ExifOutcome outcome =
        ReadFile(sPath, sReason, [&values](const Exiv2::Image& image, bool bExchangesSides) {
            ReadTags(image.exifData(), bExchangesSides, values);
        });
    if (psReason)
        *psReason = sReason;
    return outcome;
}

ExifOutcome ReadShot(const std::string& sPath, ShotValues& shot, std::string* psReason)
{
    std::string sReason;
    ShotValues values;
    const ExifOutcome outcome =
        ReadFile(sPath, sReason, [&values](const Exiv2::Image& image, bool bExchangesSides) {
            ReadShotValues(image, bExchangesSides, values);
        });
    shot = outcome == ExifOutcome::Read ? values : ShotValues();
    if (psReason)
        *psReason = sReason;
    return outcome;
}
