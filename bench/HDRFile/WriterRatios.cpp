// The writers against their targets: OpenEXR beside its compression, RGBE beside the plain twin.
#include "HDRFile/OpenExr.h"
#include "HDRFile/Radiance.h"
#include "bench/HDRFile/PlainRadiance.h"
#include "bench/HDRFile/SyntheticFloats.h"
#include "bench/support/Ratios.h"
#include "tests/support/TempFolder.h"

#include <ImathBox.h>
#include <ImfHeader.h>
#include <ImfRgbaFile.h>
#include <half.h>

#include <cstdint>
#include <string>
#include <vector>

namespace {

constexpr std::int32_t WIDTH = 6000, HEIGHT = 2000;

std::vector<Imf::Rgba> Halves(const std::vector<float>& vfPixels)
{
    std::vector<Imf::Rgba> vPixels;
    vPixels.reserve(vfPixels.size() / 3);
    const auto value = [](float f) { return half(static_cast<float>(f * 0.001)); };
    for (std::size_t i = 0; i < vfPixels.size(); i += 3)
        vPixels.emplace_back(value(vfPixels[i]), value(vfPixels[i + 1]), value(vfPixels[i + 2]), half(1.0F));
    return vPixels;
}

/// The library alone, from pixels that lie ready in memory.
void CompressAlone(const std::vector<Imf::Rgba>& vPixels, const std::string& sPath)
{
    const Imath::Box2i window(Imath::V2i(0, 0), Imath::V2i(WIDTH - 1, HEIGHT - 1));
    const Imf::Header header(window, window, 1, Imath::V2f(0, 0), 1, Imf::INCREASING_Y, Imf::PIZ_COMPRESSION);
    Imf::RgbaOutputFile file(sPath.c_str(), header, Imf::WRITE_RGBA, 0);
    file.setFrameBuffer(vPixels.data(), 1, WIDTH);
    file.writePixels(HEIGHT);
}

void MeasureWriters(LS::Bench::RatioTable& table)
{
    const LS::Tests::TempFolder folder;
    const std::string sCache = folder.File("cache.tmp"), sPicture = folder.File("picture");
    const std::vector<float> vfPixels = LS::Bench::SyntheticFloats(WIDTH, HEIGHT);
    LS::Tests::WriteElements(sCache, vfPixels);

    const std::vector<Imf::Rgba> vHalves = Halves(vfPixels);
    table.Ratio(
        "OpenEXR save, 12 MP: beside PIZ compression alone", 1.08,
        [&] {
            LS::Bench::Require(WriteOpenExrFile(sCache.c_str(), sPicture.c_str(), WIDTH, HEIGHT, nullptr),
                               "not written");
        },
        [&] { CompressAlone(vHalves, folder.File("alone")); });
    table.Ratio(
        "RGBE save, 12 MP: beside the plain twin", 0.8,
        [&] {
            LS::Bench::Require(WriteRadianceFile(sCache.c_str(), sPicture.c_str(), WIDTH, HEIGHT, nullptr),
                               "not written");
        },
        [&] { LS::Bench::WritePlainRadiance(sCache, folder.File("plain"), WIDTH, HEIGHT); });
}

} // namespace

int main(int argc, char** argv)
{
    return LS::Bench::PrintRows(argc, argv, MeasureWriters);
}
