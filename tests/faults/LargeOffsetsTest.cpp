// Pictures whose files go beyond 2 and 4 GiB, in the memory of a small one.
#include "tests/faults/Form.h"
#include "tests/faults/MergeFixture.h"

#include <filesystem>
#include <fstream>
#include <sys/resource.h>

using namespace LS::Tests;
namespace fs = std::filesystem;

namespace {

constexpr std::int32_t WIDTH = 20'000, FEW = 4;

class LargeOffsets : public MergeFixture {
protected:
    /// The peak of this process's memory in KiB.
    static long Peak()
    {
        rusage usage{};
        getrusage(RUSAGE_SELF, &usage);
        return usage.ru_maxrss;
    }

    /// The last rows of the float cache file as bytes.
    static std::string LastRows()
    {
        std::string sRows(std::size_t{12} * WIDTH * FEW, '\0');
        std::ifstream file(FloatCachePath(), std::ios::binary);
        file.seekg(-std::ssize(sRows), std::ios::end);
        file.read(sRows.data(), std::ssize(sRows));
        return file ? sRows : "";
    }

    /// Makes each source higher: black and without a place on the disk, but for what it held, which becomes
    /// its last rows.
    void MoveToTheEnd(std::int32_t nHeight)
    {
        for (const std::size_t i : {0U, 1U}) {
            const std::string sRows = ReadText(File(i));
            WriteText(File(i), "");
            fs::resize_file(File(i),
                            std::uintmax_t{4} * WIDTH * static_cast<std::uintmax_t>(nHeight) - sRows.size());
            std::ofstream(File(i), std::ios::binary | std::ios::app) << sRows;
        }
        series.nHeight = nHeight;
    }
};

} // namespace

TEST_F(LargeOffsets, LastRowsAreRightAndMemoryStaysSmall)
{
    if (!IsLongForm())
        return;                             // minutes, and gigabytes on the disk
    constexpr std::int32_t HEIGHT = 20'000; // 400 megapixels: 1.6 GB of each source, 4.8 GB of floats
    constexpr auto PIXELS = std::uintmax_t{WIDTH} * HEIGHT;
    if (fs::space(fs::temp_directory_path()).available < 36 * PIXELS)
        return ReportNotTried("the temporary directory has too little room for large pictures");
    TakeGradients(WIDTH, FEW, 2);
    ASSERT_TRUE(Merge());
    const std::string sExpected = LastRows();

    MoveToTheEnd(HEIGHT);
    std::ofstream("/proc/self/clear_refs") << 5; // lets the peak begin anew
    ASSERT_TRUE(Merge());
    EXPECT_EQ(12 * PIXELS, fs::file_size(FloatCachePath()));
    EXPECT_TRUE(sExpected == LastRows());
    for (std::int32_t nFormat = 0; nFormat < 3; ++nFormat)
        EXPECT_TRUE(SaveHDRFile(folder.File("out").c_str(), nFormat, nullptr)) << nFormat;
    EXPECT_GT(300 << 10, Peak()) << "merging and saving hold rows";

    RecordingProgress progress;
    ProgbarSetter setter = progress.Setter();
    EXPECT_TRUE(LS::Util::PixelBuffer(ToneMapFull(0, 2.2F, &nOutWidth, &nOutHeight, &setter)));
    EXPECT_EQ(HEIGHT, nOutHeight);
    const auto nPlanes = static_cast<long>(7 * PIXELS >> 10); // a plane of floats and the bytes
    EXPECT_GT(nPlanes + (300 << 10), Peak());
}
