// Pictures whose files go beyond 2 and 4 GiB, in the memory of a small one.
#include "Util/PixelBuffer.h"
#include "engine/HDRRoutine.h"
#include "engine/HDRWorkspace.h"
#include "engine/OwnedCurves.h"
#include "tests/faults/Form.h"
#include "tests/faults/MergeFixture.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

using namespace LS::Tests;
namespace fs = std::filesystem;

namespace {

/// Lets the peak begin anew, from what is in use.
void ForgetPeak()
{
    std::ofstream("/proc/self/clear_refs") << 5;
}

/// Peak of the resident memory in MiB.
long PeakMemory()
{
    std::ifstream status("/proc/self/status");
    std::string sWord;
    while (status >> sWord && sWord != "VmHWM:") {
    }
    long nKilobytes = 0;
    status >> nKilobytes;
    return nKilobytes / 1024;
}

/// The bytes of a file's end.
Bytes Tail(const std::string& sPath, std::size_t nBytes)
{
    std::ifstream file(sPath, std::ios::binary);
    file.seekg(-static_cast<std::streamoff>(nBytes), std::ios::end);
    Bytes bytes(nBytes);
    file.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(nBytes));
    return file ? bytes : Bytes();
}

/// Makes each source as high as the picture: black and without a place on the disk, but for what it held,
/// which becomes its last rows.
void MoveToTheEnd(const TempFolder& folder, SyntheticSeries& series, std::int32_t nHeight)
{
    for (std::size_t i = 0; i < series.vsFiles.size(); ++i) {
        const std::string sPath = folder.File("plain" + std::to_string(i) + ".tmp");
        const Bytes rows = ReadBytes(sPath);
        const auto nBytes = std::int64_t{4} * series.nWidth * nHeight;
        fs::resize_file(sPath, 0);
        fs::resize_file(sPath, static_cast<std::uintmax_t>(nBytes));
        std::fstream file(sPath, std::ios::binary | std::ios::in | std::ios::out);
        file.seekp(static_cast<std::streamoff>(nBytes) - static_cast<std::streamoff>(rows.size()));
        file.write(reinterpret_cast<const char*>(rows.data()), static_cast<std::streamsize>(rows.size()));
        ASSERT_TRUE(file.good());
    }
    series.nHeight = nHeight;
}

} // namespace

TEST(LargeOffsets, LastRowsAreRightAndMemoryStaysSmall)
{
    if (!IsLongForm())
        return; // minutes, and gigabytes on the disk
    constexpr std::int32_t WIDTH = 20'000, FEW = 4;
    for (const std::int32_t nHeight : {10'000, 20'000}) { // 200 and 400 megapixels: 2.4 and 4.8 GB of floats
        SCOPED_TRACE(nHeight);
        const std::uintmax_t nNeeded = std::uintmax_t{36} * WIDTH * static_cast<std::uintmax_t>(nHeight);
        if (fs::space(fs::temp_directory_path()).available < nNeeded) {
            TellNotTried("the temporary directory has too little room for large pictures");
            return;
        }
        const TempFolder folder;
        SyntheticSeries series = PlainSeries(folder, WIDTH, FEW, 2);
        const auto merge = [&series] {
            OwnedCurves curves;
            LoadCurves(nullptr, curves.Get());
            ResetWorkspace();
            const bool bMerged = MergeExposures(series.vsFiles, series.nWidth, series.nHeight,
                                                series.vfShutters, series.vfStops, series.vfGains,
                                                series.vfNDs, curves.Get(), nullptr, &Workspace());
            if (bMerged)
                curves.Release();
            return bMerged;
        };
        constexpr std::size_t TAIL = std::size_t{12} * WIDTH * FEW;
        ASSERT_TRUE(merge());
        const Bytes expected = Tail(FloatCachePath(), TAIL);

        MoveToTheEnd(folder, series, nHeight);
        ForgetPeak();
        ASSERT_TRUE(merge());
        EXPECT_EQ(std::uintmax_t{12} * WIDTH * static_cast<std::uintmax_t>(nHeight),
                  fs::file_size(FloatCachePath()));
        EXPECT_TRUE(expected == Tail(FloatCachePath(), TAIL));
        for (std::int32_t nFormat = 0; nFormat < 3; ++nFormat)
            EXPECT_TRUE(SaveHDRFile(folder.File("out").c_str(), nFormat, nullptr)) << nFormat;
        const long nMerging = PeakMemory();
        EXPECT_GT(300, nMerging) << "merging and saving hold rows";

        ActingProgress target(1000, [] {});
        ProgbarSetter setter = target.Setter();
        std::int32_t nWidth = 0, nMapped = 0;
        EXPECT_TRUE(LS::Util::PixelBuffer(ToneMapFull(0, 2.2F, &nWidth, &nMapped, &setter)));
        EXPECT_EQ(nHeight, nMapped);
        const long nPlanes = (std::int64_t{7} * WIDTH * nHeight) >> 20; // a plane of floats and the bytes
        EXPECT_GT(nPlanes + 300, PeakMemory());
        std::printf("%d rows: peak %ld MiB after saving, %ld after mapping\n", nHeight, nMerging,
                    PeakMemory());
        ResetWorkspace();
    }
}
