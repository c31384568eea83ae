// OpenEXR pictures, read back by the library and compared with what its plain constructor writes.
#include "HDRFile/OpenExr.h"

#include "tests/HDRFile/CachePicture.h"

#include <ImathBox.h>
#include <ImfRgbaFile.h>
#include <ImfThreading.h>
#include <gtest/gtest.h>

#include <clocale>
#include <cstdlib>

namespace LS::Tests {

namespace {

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
        CachePicture cache(45, nHeight);
        cache.vfStored[0] = 6.5504e7F; // the largest half
        cache.vfStored[1] = 1e8F;      // infinity
        cache.vfStored[2] = -1000.0F;
        cache.Store();
        const std::string sOurs = cache.File("picture.exr"), sTheirs = cache.File("plain.exr");
        ASSERT_TRUE(WriteOpenExrFile(cache.sPath.c_str(), sOurs.c_str(), 45, nHeight, nullptr));
        WriteByTheLibraryAlone(sTheirs, cache);
        EXPECT_EQ(ReadBytes(sTheirs), ReadBytes(sOurs)) << nHeight << " rows";
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

} // namespace LS::Tests
