// Many merges and saves in one process: memory and descriptors stay what they are.
#include "Util/PixelBuffer.h"
#include "engine/HDRRoutine.h"
#include "engine/HDRWorkspace.h"
#include "image/LdrSave.h"
#include "tests/faults/Form.h"
#include "tests/faults/MergeFixture.h"

#include <gtest/gtest.h>
#include <wx/image.h>
#include <wx/init.h>

#include <filesystem>
#include <fstream>
#include <iterator>

using namespace LS::Tests;

namespace {

/// Resident memory in KiB.
long ResidentMemory()
{
    std::ifstream status("/proc/self/status");
    std::string sWord;
    while (status >> sWord && sWord != "VmRSS:") {
    }
    long nKilobytes = 0;
    status >> nKilobytes;
    return nKilobytes;
}

std::ptrdiff_t Descriptors()
{
    return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
}

void MergeAndSave(const SyntheticSeries& series, Curves curves, const TempFolder& folder)
{
    ASSERT_TRUE(Merge(series, curves));
    for (std::int32_t nFormat = 0; nFormat < 3; ++nFormat)
        ASSERT_TRUE(SaveHDRFile(folder.File("out").c_str(), nFormat, nullptr));
    ASSERT_TRUE(SaveCurves(folder.File("out.crv").c_str()));
    ActingProgress target(1000, [] {});
    ProgbarSetter setter = target.Setter();
    std::int32_t nWidth = 0, nHeight = 0;
    LS::Util::PixelBuffer pPixels(ToneMapFull(0, 2.2F, &nWidth, &nHeight, &setter));
    ASSERT_TRUE(pPixels);
    wxImage image(nWidth, nHeight, pPixels.release());
    for (const LdrFormat format :
         {LdrFormat::Jpeg, LdrFormat::Png, LdrFormat::Tiff, LdrFormat::Bmp, LdrFormat::Targa})
        ASSERT_EQ(LdrOutcome::Saved, SaveLdr(image, folder.File("out"), format, {}));
}

} // namespace

TEST(Endurance, MemoryAndDescriptorsStayFlat)
{
    const wxInitializer library;
    const TempFolder folder;
    const SyntheticSeries small = Photograph(folder, RenderScene(60, 40), {}, Bracket(3, 4));
    const TempFolder wide;
    const SyntheticSeries large = PlainSeries(wide, 1501, 100, 2);
    const int nRounds = InForm(30, 500), nWarm = 5;
    long nMemory = 0;
    std::ptrdiff_t nDescriptors = 0;
    for (int i = 0; i < nRounds; ++i) {
        MergeAndSave(i % 2 ? small : large, i % 10 == 1 ? Curves::Recovered : Curves::Standard, folder);
        if (i == nWarm) {
            nMemory = ResidentMemory();
            nDescriptors = Descriptors();
        }
    }
    ResetWorkspace();
    EXPECT_EQ(nDescriptors, Descriptors());
    const long nGrown = ResidentMemory() - nMemory;
    std::printf("%d rounds: %ld KiB, grown by %ld\n", nRounds, nMemory, nGrown);
#ifndef __SANITIZE_ADDRESS__ // which keeps what was freed for a while
    EXPECT_GT(4096, nGrown) << "one lost preview a round would be tens of megabytes";
#endif
}
