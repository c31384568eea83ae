// Pictures whose files go beyond 2 and 4 GiB, in the memory of a small one.
#include "engine/HDRRoutine.h"
#include "engine/HDRWorkspace.h"
#include "tests/faults/Form.h"
#include "tests/faults/MergeFixture.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

using namespace LS::Tests;
namespace fs = std::filesystem;

namespace {

constexpr std::int32_t WIDTH = 20'000, FEW = 4;

/// What a merged picture has in its last rows.
std::vector<float> LastRows()
{
    std::vector<float> vfRows(std::size_t{3} * WIDTH * FEW);
    const auto nBytes = static_cast<std::streamsize>(vfRows.size() * sizeof(float));
    std::ifstream file(FloatCachePath(), std::ios::binary);
    file.seekg(-nBytes, std::ios::end);
    file.read(reinterpret_cast<char*>(vfRows.data()), nBytes);
    return file ? vfRows : std::vector<float>();
}

/// Makes each source higher: black and without a place on the disk, but for what it held, which becomes its
/// last rows.
void MoveToTheEnd(const TempFolder& folder, SyntheticSeries& series, std::int32_t nHeight)
{
    for (const char* szName : {"plain0.tmp", "plain1.tmp"}) {
        const std::string sRows = ReadText(folder.File(szName));
        WriteText(folder.File(szName), "");
        fs::resize_file(folder.File(szName),
                        std::uintmax_t{4} * WIDTH * static_cast<std::uintmax_t>(nHeight) - sRows.size());
        std::ofstream(folder.File(szName), std::ios::binary | std::ios::app) << sRows;
    }
    series.nHeight = nHeight;
}

} // namespace

TEST(LargeOffsets, LastRowsAreRightAndMemoryStaysSmall)
{
    if (!IsLongForm())
        return;                                           // minutes, and gigabytes on the disk
    for (const std::int32_t nHeight : {10'000, 20'000}) { // 200 and 400 megapixels: 2.4 and 4.8 GB of floats
        SCOPED_TRACE(nHeight);
        const auto nPixels = std::uintmax_t{WIDTH} * static_cast<std::uintmax_t>(nHeight);
        if (fs::space(fs::temp_directory_path()).available < 36 * nPixels)
            return ReportNotTried("the temporary directory has too little room for large pictures");
        const TempFolder folder;
        SyntheticSeries series = PlainSeries(folder, WIDTH, FEW, 2);
        ASSERT_TRUE(MergeToFile(series));
        const std::vector<float> vfExpected = LastRows();

        MoveToTheEnd(folder, series, nHeight);
        std::ofstream("/proc/self/clear_refs") << 5; // lets the peak begin anew
        ASSERT_TRUE(MergeToFile(series));
        EXPECT_EQ(12 * nPixels, fs::file_size(FloatCachePath()));
        EXPECT_TRUE(vfExpected == LastRows());
        for (std::int32_t nFormat = 0; nFormat < 3; ++nFormat)
            EXPECT_TRUE(SaveHDRFile(folder.File("out").c_str(), nFormat, nullptr)) << nFormat;
        EXPECT_GT(300 << 10, MemoryInUse("VmHWM:")) << "merging and saving hold rows";

        std::int32_t nWidth = 0, nMapped = 0;
        EXPECT_TRUE(MapWithProgress(nWidth, nMapped));
        EXPECT_EQ(nHeight, nMapped);
        const auto nPlanes = static_cast<long>(7 * nPixels >> 10); // a plane of floats and the bytes
        EXPECT_GT(nPlanes + (300 << 10), MemoryInUse("VmHWM:"));
        ResetWorkspace();
    }
}
