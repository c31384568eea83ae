// OpenEXR pictures, read back by the library and compared with what its plain constructor writes.
#include "HDRFile/OpenExr.h"

#include "tests/HDRFile/CachePicture.h"
#include "tests/support/FailureRecorder.h"

#include <ImathBox.h>
#include <ImfChannelList.h>
#include <ImfHeader.h>
#include <ImfRgbaFile.h>
#include <ImfThreading.h>
#include <gtest/gtest.h>

#include <clocale>
#include <cstdlib>
#include <filesystem>
#include <set>

namespace LS::Tests {

namespace {

std::vector<Imf::Rgba> ReadPixels(const std::string& sFile, std::size_t nPixels)
{
    Imf::RgbaInputFile file(sFile.c_str());
    const Imath::Box2i window = file.dataWindow();
    const int nWidth = window.max.x + 1;
    std::vector<Imf::Rgba> pixels(nPixels);
    file.setFrameBuffer(pixels.data(), 1, static_cast<std::size_t>(nWidth));
    file.readPixels(window.min.y, window.max.y);
    return pixels;
}

void WriteByTheLibraryAlone(const std::string& sFile, const CachePicture& cache)
{
    std::vector<Imf::Rgba> pixels;
    for (std::size_t i = 0; i < cache.vfStored.size(); i += 3)
        pixels.emplace_back(half(cache.Scaled(i)), half(cache.Scaled(i + 1)), half(cache.Scaled(i + 2)));
    const Imath::Box2i window({0, 0}, {cache.nWidth - 1, cache.nHeight - 1});
    Imf::RgbaOutputFile file(sFile.c_str(), window, window, Imf::WRITE_RGBA, 1.0F, Imath::V2f(0, 0), 1.0F,
                             Imf::INCREASING_Y, Imf::PIZ_COMPRESSION, Imf::globalThreadCount());
    file.setFrameBuffer(pixels.data(), 1, static_cast<std::size_t>(cache.nWidth));
    file.writePixels(cache.nHeight);
}

} // namespace

TEST(OpenExr, EqualsTheLibrarysOwnFile)
{
    // 32 rows share one compressed block; 1 and 67 leave it partly filled.
    for (const std::int32_t nHeight : {1, 32, 67}) {
        const CachePicture cache(45, nHeight);
        const std::string sOurs = cache.File("picture.exr"), sTheirs = cache.File("plain.exr");
        ASSERT_TRUE(WriteOpenExrFile(cache.sPath.c_str(), sOurs.c_str(), 45, nHeight, nullptr));
        WriteByTheLibraryAlone(sTheirs, cache);
        EXPECT_EQ(ReadBytes(sTheirs), ReadBytes(sOurs)) << nHeight << " rows";
    }
}

TEST(OpenExr, HeaderSaysNoMoreThanItShould)
{
    const CachePicture cache(45, 3);
    const std::string sFile = cache.File("picture.exr");
    ASSERT_TRUE(WriteOpenExrFile(cache.sPath.c_str(), sFile.c_str(), 45, 3, nullptr));

    const Imf::RgbaInputFile file(sFile.c_str());
    const Imath::Box2i window({0, 0}, {44, 2});
    EXPECT_EQ(window, file.dataWindow());
    EXPECT_EQ(window, file.displayWindow());
    EXPECT_EQ(Imf::WRITE_RGBA, file.channels());
    EXPECT_EQ(1.0F, file.pixelAspectRatio());
    EXPECT_EQ(Imath::V2f(0, 0), file.screenWindowCenter());
    EXPECT_EQ(1.0F, file.screenWindowWidth());
    EXPECT_EQ(Imf::INCREASING_Y, file.lineOrder());
    EXPECT_EQ(Imf::PIZ_COMPRESSION, file.compression());
    EXPECT_FALSE(file.header().hasTileDescription());
    std::set<std::string> names;
    for (auto i = file.header().begin(); i != file.header().end(); ++i)
        names.insert(i.name());
    EXPECT_EQ((std::set<std::string>{"channels", "compression", "dataWindow", "displayWindow", "lineOrder",
                                     "pixelAspectRatio", "screenWindowCenter", "screenWindowWidth"}),
              names);
    for (auto i = file.header().channels().begin(); i != file.header().channels().end(); ++i)
        EXPECT_EQ(Imf::HALF, i.channel().type) << i.name();
}

TEST(OpenExr, PixelsAreTheHalvesOfTheScaledFloats)
{
    CachePicture cache(11, 4);
    cache.vfStored[0] = 1000.0F;
    cache.vfStored[1] = 6.5504e7F;
    cache.vfStored[2] = 1e8F;
    cache.vfStored[3] = -1000.0F;
    cache.Store();
    const std::string sFile = cache.File("picture.exr");
    ASSERT_TRUE(WriteOpenExrFile(cache.sPath.c_str(), sFile.c_str(), 11, 4, nullptr));

    const std::vector<Imf::Rgba> pixels = ReadPixels(sFile, 44);
    EXPECT_EQ(1.0F, pixels[0].r);
    EXPECT_EQ(65504.0F, pixels[0].g);
    EXPECT_TRUE(pixels[0].b.isInfinity());
    EXPECT_EQ(-1.0F, pixels[1].r);
    for (std::size_t i = 0; i < pixels.size(); ++i) {
        ASSERT_EQ(half(cache.Scaled(3 * i)).bits(), pixels[i].r.bits()) << i;
        ASSERT_EQ(half(cache.Scaled(3 * i + 1)).bits(), pixels[i].g.bits()) << i;
        ASSERT_EQ(half(cache.Scaled(3 * i + 2)).bits(), pixels[i].b.bits()) << i;
        ASSERT_EQ(1.0F, pixels[i].a) << i;
    }
}

TEST(OpenExr, NumbersKeepTheirPoint)
{
    const CachePicture cache(4, 1);
    std::setlocale(LC_ALL, "C");
    setenv("LC_ALL", "C.UTF-8", 1);
    ASSERT_TRUE(WriteOpenExrFile(cache.sPath.c_str(), cache.File("picture.exr").c_str(), 4, 1, nullptr));
    unsetenv("LC_ALL");
    EXPECT_STREQ("C.UTF-8", std::setlocale(LC_CTYPE, nullptr)); // the environment's
    EXPECT_STREQ("C", std::setlocale(LC_NUMERIC, nullptr));
    std::setlocale(LC_ALL, "C");
}

TEST(OpenExr, BlocksBeforeAShortReadStay)
{
    const CachePicture cache(20, 70);
    std::filesystem::resize_file(cache.sPath, 20 * 12 * 64 + 100);
    const std::string sFile = cache.File("picture.exr");
    const FailureRecorder failures;
    ASSERT_FALSE(WriteOpenExrFile(cache.sPath.c_str(), sFile.c_str(), 20, 70, nullptr));

    Imf::RgbaInputFile file(sFile.c_str());
    EXPECT_FALSE(file.isComplete());
    std::vector<Imf::Rgba> pixels(std::size_t{20} * 70);
    file.setFrameBuffer(pixels.data(), 1, 20);
    file.readPixels(0, 63);
    for (std::size_t i = 0; i < std::size_t{20} * 64; ++i)
        ASSERT_EQ(half(cache.Scaled(3 * i)).bits(), pixels[i].r.bits()) << i;
}

} // namespace LS::Tests
