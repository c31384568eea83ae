// Renders, encodes and decodes the photographs of the measurements.
#include "bench/support/Photographs.h"

#include <array>
#include <cmath>
#include <cstdio>
#include <memory>
#include <stdexcept>

#include <jpeglib.h>

namespace LS::Bench::Photographs {

namespace {

struct FileCloser {
    void operator()(FILE* pFile) const { std::fclose(pFile); }
};
using File = std::unique_ptr<FILE, FileCloser>;

File Open(const std::string& sPath, const char* szMode)
{
    File file(std::fopen(sPath.c_str(), szMode));
    if (!file)
        throw std::runtime_error(sPath);
    return file;
}

/// Photograph i row by row. Radiance is a logarithm from -7 to 7 in steps of 1/RANGE of it, so that a table
/// takes the place of the camera's response.
class Renderer {
public:
    explicit Renderer(std::size_t i) : m_nNoise(static_cast<std::uint32_t>(977 * i + 1))
    {
        for (std::size_t n = 0; n < m_response.size(); ++n) {
            const double dLog = (static_cast<double>(n) / MIDDLE - 1) * DECADES;
            const double dLight = std::pow(60.0 * Shutters()[i] * std::exp(dLog), 1.1);
            m_response[n] = static_cast<unsigned char>(std::lround(255 * dLight / (dLight + 1)));
        }
    }

    /// Calls pixel(x, red, green, blue) along row y.
    template <typename Pixel> void Row(std::int32_t y, Pixel pixel)
    {
        for (std::int32_t x = 0; x < WIDTH; ++x) {
            const float fLog = LogRadiance(x, y);
            m_nNoise = m_nNoise * 1664525U + 1013904223U;
            const int nNoise = static_cast<int>(m_nNoise >> 26) - 32;
            pixel(x, Value(fLog - 0.25F, nNoise), Value(fLog, nNoise), Value(fLog + 0.25F, nNoise));
        }
    }

private:
    static constexpr int MIDDLE = 2048;
    static constexpr std::size_t STEPS = 4096; // twice the middle
    static constexpr int DECADES = 7;          // of e

    static float LogRadiance(std::int32_t nColumn, std::int32_t nRow)
    {
        const auto x = static_cast<float>(nColumn);
        const auto y = static_cast<float>(nRow);
        const bool bWindow = nColumn / 700 % 4 == 0 && nRow / 600 % 3 == 0;
        const bool bCorner = nColumn / 500 % 5 == 1 && nRow / 700 % 4 == 2;
        return 2.2F * std::sin(x * 0.0011F) * std::cos(y * 0.0013F) +
               0.8F * std::sin(x * 0.013F + y * 0.007F) + 0.15F * std::sin(x * 0.31F) * std::sin(y * 0.27F) +
               0.7F * static_cast<float>((nColumn / 400 + nRow / 300) % 3 - 1) + (bWindow ? 3.0F : 0.0F) -
               (bCorner ? 3.0F : 0.0F);
    }

    unsigned char Value(float fLog, int nNoise) const
    {
        const int n = MIDDLE + static_cast<int>(fLog * MIDDLE / DECADES) + nNoise;
        return m_response[static_cast<std::size_t>(std::min(std::max(n, 0), 2 * MIDDLE - 1))];
    }

    std::uint32_t m_nNoise;
    std::array<unsigned char, STEPS> m_response{};
};

} // namespace

std::vector<float> Shutters()
{
    return {1 / 500.0F, 1 / 125.0F, 1 / 31.0F, 1 / 8.0F, 1 / 2.0F};
}

void WriteSource(std::size_t i, const std::string& sPath)
{
    const File file = Open(sPath, "wb");
    Renderer renderer(i);
    std::vector<unsigned char> row(4 * static_cast<std::size_t>(WIDTH));
    for (std::int32_t y = 0; y < HEIGHT; ++y) {
        renderer.Row(y, [&](std::int32_t x, unsigned char r, unsigned char g, unsigned char b) {
            unsigned char* const pPixel = row.data() + 4 * static_cast<std::size_t>(x);
            pPixel[1] = r;
            pPixel[2] = g;
            pPixel[3] = b;
        });
        if (std::fwrite(row.data(), 1, row.size(), file.get()) != row.size())
            throw std::runtime_error(sPath);
    }
}

void WriteJpeg(std::size_t i, const std::string& sPath)
{
    const File file = Open(sPath, "wb");
    Renderer renderer(i);
    std::vector<unsigned char> row(3 * static_cast<std::size_t>(WIDTH));
    jpeg_compress_struct info{};
    jpeg_error_mgr errors{};
    info.err = jpeg_std_error(&errors);
    jpeg_create_compress(&info);
    jpeg_stdio_dest(&info, file.get());
    info.image_width = WIDTH;
    info.image_height = HEIGHT;
    info.input_components = 3;
    info.in_color_space = JCS_RGB;
    jpeg_set_defaults(&info);
    jpeg_set_quality(&info, 92, TRUE);
    jpeg_start_compress(&info, TRUE);
    for (std::int32_t y = 0; y < HEIGHT; ++y) {
        renderer.Row(y, [&](std::int32_t x, unsigned char r, unsigned char g, unsigned char b) {
            unsigned char* const pPixel = row.data() + 3 * static_cast<std::size_t>(x);
            pPixel[0] = r;
            pPixel[1] = g;
            pPixel[2] = b;
        });
        JSAMPROW pRow = row.data();
        jpeg_write_scanlines(&info, &pRow, 1);
    }
    jpeg_finish_compress(&info);
    jpeg_destroy_compress(&info);
}

void DecodeJpeg(const std::string& sPath)
{
    const File file = Open(sPath, "rb");
    jpeg_decompress_struct info{};
    jpeg_error_mgr errors{};
    info.err = jpeg_std_error(&errors);
    jpeg_create_decompress(&info);
    jpeg_stdio_src(&info, file.get());
    jpeg_read_header(&info, TRUE);
    info.out_color_space = JCS_RGB;
    jpeg_start_decompress(&info);
    std::vector<unsigned char> row(3 * static_cast<std::size_t>(info.output_width));
    while (info.output_scanline < info.output_height) {
        JSAMPROW pRow = row.data();
        jpeg_read_scanlines(&info, &pRow, 1);
    }
    jpeg_finish_decompress(&info);
    jpeg_destroy_decompress(&info);
}

} // namespace LS::Bench::Photographs
