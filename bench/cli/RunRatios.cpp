// A whole run of the headless program against its targets: time beside its unavoidable parts, and memory.
#include "Util/FileDescriptor.h"
#include "bench/support/HeadlessRun.h"
#include "bench/support/Photographs.h"
#include "bench/support/Ratios.h"
#include "tests/support/TempFolder.h"

#include <ImathBox.h>
#include <ImfArray.h>
#include <ImfHeader.h>
#include <ImfRgbaFile.h>

#include <fcntl.h>
#include <unistd.h>

#include <cstddef>
#include <string>
#include <vector>

using namespace LS::Bench;

namespace {

constexpr std::size_t SOURCE_ROW = 4 * static_cast<std::size_t>(Photographs::WIDTH);
constexpr std::size_t MERGED_ROW = 3 * SOURCE_ROW;

void WriteFile(const std::string& sPath, std::size_t nRowBytes)
{
    ::unlink(sPath.c_str());
    const LS::Util::FileDescriptor file(::open(sPath.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0666));
    const std::vector<char> row(nRowBytes);
    for (std::int32_t y = 0; y < Photographs::HEIGHT; ++y)
        Require(::write(file.Get(), row.data(), row.size()) == std::ssize(row), "not written");
}

void ReadFile(const std::string& sPath, std::size_t nRowBytes)
{
    const LS::Util::FileDescriptor file(::open(sPath.c_str(), O_RDONLY | O_CLOEXEC));
    std::vector<char> row(nRowBytes);
    for (std::int32_t y = 0; y < Photographs::HEIGHT; ++y)
        Require(::read(file.Get(), row.data(), row.size()) == std::ssize(row), "not read");
}

using Halves = Imf::Array2D<Imf::Rgba>;

void ReadPicture(const std::string& sPath, Halves& pixels)
{
    Imf::RgbaInputFile file(sPath.c_str(), 0);
    pixels.resizeErase(Photographs::HEIGHT, Photographs::WIDTH);
    file.setFrameBuffer(&pixels[0][0], 1, Photographs::WIDTH);
    file.readPixels(0, Photographs::HEIGHT - 1);
}

void WritePicture(const std::string& sPath, const Halves& pixels)
{
    const Imath::Box2i window(Imath::V2i(0, 0), Imath::V2i(Photographs::WIDTH - 1, Photographs::HEIGHT - 1));
    const Imf::Header header(window, window, 1, Imath::V2f(0, 0), 1, Imf::INCREASING_Y, Imf::PIZ_COMPRESSION);
    Imf::RgbaOutputFile file(sPath.c_str(), header, Imf::WRITE_RGBA, 0);
    file.setFrameBuffer(&pixels[0][0], 1, Photographs::WIDTH);
    file.writePixels(Photographs::HEIGHT);
}

void MeasureRun(RatioTable& table)
{
    const LS::Tests::TempFolder folder;
    const std::string sWork = folder.File("work");
    const HeadlessRun run(LS_HEADLESS_PROGRAM, folder.Path());

    table.Amount("5 JPEG of 24 MP to OpenEXR: peak memory", "MiB", 120, run);

    Halves pixels;
    ReadPicture(run.Picture(), pixels);
    const auto unavoidable = [&] {
        for (const std::string& sPhotograph : run.Photographs()) {
            Photographs::DecodeJpeg(sPhotograph);
            WriteFile(sWork + sPhotograph.substr(sPhotograph.size() - 5), SOURCE_ROW);
        }
        for (const std::string& sPhotograph : run.Photographs())
            ReadFile(sWork + sPhotograph.substr(sPhotograph.size() - 5), SOURCE_ROW);
        WriteFile(sWork, MERGED_ROW);
        ReadFile(sWork, MERGED_ROW);
        WritePicture(folder.File("alone.exr"), pixels);
    };
    table.Ratio("5 JPEG of 24 MP to OpenEXR: beside decoding, files, compression", 1.45, run, unavoidable);
}

} // namespace

int main(int argc, char** argv)
{
    return PrintRows(argc, argv, MeasureRun);
}
