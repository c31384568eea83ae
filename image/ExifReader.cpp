// Exposure values of a photograph, from its Exif data.
#include "image/ExifReader.h"

#include "image/Exiv2Messages.h"
#include "image/MetadataFile.h"

#include <exiv2/exif.hpp>
#include <exiv2/image.hpp>

#include <exception>
#include <stdexcept>

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

void ReadTags(const Exiv2::ExifData& exifData, ExposureValues& values)
{
    const auto integer = [&](const char* szKey) {
        return static_cast<std::int32_t>(FindTag(exifData, szKey).toLong(0));
    };
    const auto number = [&](const char* szKey) { return FindTag(exifData, szKey).toFloat(0); };

    values.width = integer("Exif.Photo.PixelXDimension");
    values.height = integer("Exif.Photo.PixelYDimension");
    values.exposureTime = number("Exif.Photo.ExposureTime");
    values.fNumber = number("Exif.Photo.FNumber");
    values.exposureBias = number("Exif.Photo.ExposureBiasValue");
}

ExifOutcome ReadFile(const std::string& sPath, ExposureValues& values, std::string& sReason)
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
        ReadTags(pImage->exifData(), values);
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
    const ExifOutcome outcome = ReadFile(sPath, values, sReason);
    if (psReason)
        *psReason = sReason;
    return outcome;
}
