// Writes a picture as a camera would.
#include "samples/PhotoFile.h"

#include <cstdio> // jpeglib.h needs it first

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <exiv2/exiv2.hpp>
#include <fstream>
#include <jpeglib.h>
#include <stdexcept>
#include <string>

namespace LS::Samples {
namespace {

// Keeps the nine frames below three megabytes together.
constexpr int kQuality = 88;
constexpr int kThumbnailQuality = 75;
constexpr int kThumbnailWidth = 160;
constexpr int kThumbnailHeight = 107;

// Errors of libjpeg end the program with a message, its default: to memory, only a lack of it can occur.
class Compressor {
public:
    Compressor()
    {
        m_info.err = jpeg_std_error(&m_errors);
        jpeg_create_compress(&m_info);
    }
    ~Compressor()
    {
        jpeg_destroy_compress(&m_info);
        std::free(m_buffer);
    }
    Compressor(const Compressor&) = delete;
    Compressor& operator=(const Compressor&) = delete;

    std::vector<unsigned char> Encode(const Photo& photo, int quality)
    {
        jpeg_mem_dest(&m_info, &m_buffer, &m_size);
        Configure(photo, quality);
        jpeg_start_compress(&m_info, TRUE);
        const auto stride = static_cast<std::size_t>(photo.width) * 3;
        while (m_info.next_scanline < m_info.image_height) {
            // libjpeg takes rows as writable but only reads them.
            auto* row = const_cast<unsigned char*>(photo.pixels.data() + m_info.next_scanline * stride);
            jpeg_write_scanlines(&m_info, &row, 1);
        }
        jpeg_finish_compress(&m_info);
        return {m_buffer, m_buffer + m_size};
    }

private:
    void Configure(const Photo& photo, int quality)
    {
        m_info.image_width = static_cast<JDIMENSION>(photo.width);
        m_info.image_height = static_cast<JDIMENSION>(photo.height);
        m_info.input_components = 3;
        m_info.in_color_space = JCS_RGB;
        jpeg_set_defaults(&m_info);
        jpeg_set_quality(&m_info, quality, TRUE);
        m_info.comp_info[0].h_samp_factor = 1;
        m_info.comp_info[0].v_samp_factor = 1;
        m_info.dct_method = JDCT_ISLOW;
        m_info.optimize_coding = TRUE;
    }

    jpeg_compress_struct m_info{};
    jpeg_error_mgr m_errors{};
    unsigned char* m_buffer = nullptr; // grown by libjpeg with malloc
    unsigned long m_size = 0;
};

unsigned char BoxMean(const Photo& photo, int x0, int x1, int y0, int y1, std::size_t channel)
{
    int sum = 0;
    for (int y = y0; y < y1; ++y)
        for (int x = x0; x < x1; ++x)
            sum += photo.pixels[static_cast<std::size_t>(y * photo.width + x) * 3 + channel];
    return static_cast<unsigned char>(sum / ((x1 - x0) * (y1 - y0)));
}

Photo Thumbnail(const Photo& photo)
{
    Photo small{kThumbnailWidth, kThumbnailHeight, {}};
    for (int y = 0; y < small.height; ++y)
        for (int x = 0; x < small.width; ++x)
            for (std::size_t channel = 0; channel < 3; ++channel)
                small.pixels.push_back(
                    BoxMean(photo, x * photo.width / small.width, (x + 1) * photo.width / small.width,
                            y * photo.height / small.height, (y + 1) * photo.height / small.height, channel));
    return small;
}

Exiv2::URational Tenths(double v)
{
    return {static_cast<std::uint32_t>(std::lround(v * 10.0)), 10};
}
Exiv2::Rational SignedTenths(double v)
{
    return {static_cast<int>(std::lround(v * 10.0)), 10};
}

void DescribeCamera(Exiv2::ExifData& exif)
{
    exif["Exif.Image.Make"] = "Lumistrand";
    exif["Exif.Image.Model"] = "Lumistrand Imaginary One";
    exif["Exif.Image.Software"] = "render_samples";
    exif["Exif.Image.ImageDescription"] = "A room with a window onto a street; a computed scene";
    exif["Exif.Image.Copyright"] = "MIT licence, as the program";
    exif["Exif.Image.Orientation"] = std::uint16_t{1};
    exif["Exif.Image.XResolution"] = Exiv2::URational{72, 1};
    exif["Exif.Image.YResolution"] = Exiv2::URational{72, 1};
    exif["Exif.Image.ResolutionUnit"] = std::uint16_t{2};
    exif["Exif.Image.YCbCrPositioning"] = std::uint16_t{1};
    exif["Exif.Photo.ExifVersion"] = "48 50 51 49";         // "0231"
    exif["Exif.Photo.FlashpixVersion"] = "48 49 48 48";     // "0100"
    exif["Exif.Photo.ComponentsConfiguration"] = "1 2 3 0"; // Y, Cb, Cr
    exif["Exif.Photo.ColorSpace"] = std::uint16_t{1};
    exif["Exif.Photo.FocalLength"] = Exiv2::URational{28, 1};
    exif["Exif.Photo.FocalLengthIn35mmFilm"] = std::uint16_t{28};
    exif["Exif.Photo.LensModel"] = "Lumistrand Shift 28 mm";
    exif["Exif.Photo.MeteringMode"] = std::uint16_t{2};
    exif["Exif.Photo.Flash"] = std::uint16_t{0};
}

void DescribeExposure(Exiv2::ExifData& exif, const SampleExposure& exposure, int frame)
{
    const std::string time = "2024:09:14 17:42:0" + std::to_string(frame);
    exif["Exif.Image.DateTime"] = time;
    exif["Exif.Photo.DateTimeOriginal"] = time;
    exif["Exif.Photo.DateTimeDigitized"] = time;
    exif["Exif.Photo.ExposureTime"] = Exiv2::URational{exposure.numerator, exposure.denominator};
    exif["Exif.Photo.ShutterSpeedValue"] = SignedTenths(-std::log2(exposure.Seconds()));
    exif["Exif.Photo.FNumber"] = Tenths(kSampleFNumber);
    exif["Exif.Photo.ApertureValue"] = Tenths(2.0 * std::log2(kSampleFNumber));
    exif["Exif.Photo.ISOSpeedRatings"] = static_cast<std::uint16_t>(kSampleIso);
    exif["Exif.Photo.ExposureBiasValue"] = Exiv2::Rational{exposure.biasHalves, 2};
    exif["Exif.Photo.ExposureProgram"] = std::uint16_t{1};
    exif["Exif.Photo.ExposureMode"] = std::uint16_t{2}; // bracketing
}

} // namespace

std::vector<unsigned char> EncodeJpeg(const Photo& photo, int quality)
{
    return Compressor().Encode(photo, quality);
}

void WritePhoto(const std::filesystem::path& path, const Photo& photo, const SampleExposure& exposure,
                int frame)
{
    const auto bytes = EncodeJpeg(photo, kQuality);
    std::ofstream file(path, std::ios::binary);
    file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    file.close();
    if (!file)
        throw std::runtime_error("cannot write " + path.string());

    Exiv2::ExifData exif;
    DescribeCamera(exif);
    DescribeExposure(exif, exposure, frame);
    exif["Exif.Photo.PixelXDimension"] = static_cast<std::uint32_t>(photo.width);
    exif["Exif.Photo.PixelYDimension"] = static_cast<std::uint32_t>(photo.height);
    const auto thumbnail = EncodeJpeg(Thumbnail(photo), kThumbnailQuality);
    Exiv2::ExifThumb(exif).setJpegThumbnail(thumbnail.data(), static_cast<long>(thumbnail.size()),
                                            Exiv2::URational{72, 1}, Exiv2::URational{72, 1}, 2);
    const auto image = Exiv2::ImageFactory::open(path.string());
    image->setExifData(exif);
    image->writeMetadata();
}

} // namespace LS::Samples
