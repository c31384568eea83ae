// Many merges and saves in one process: memory and descriptors stay what they are.
#include "engine/HDRRoutine.h"
#include "engine/HDRWorkspace.h"
#include "image/LdrSave.h"
#include "tests/faults/Form.h"
#include "tests/faults/MergeFixture.h"
#include "tests/support/TestProcess.h"

#include <gtest/gtest.h>
#include <wx/image.h>
#include <wx/init.h>

using namespace LS::Tests;

TEST(Endurance, MemoryAndDescriptorsStayFlat)
{
    const wxInitializer library;
    const TempFolder folder;
    const SyntheticSeries small = Photograph(folder, RenderScene(60, 40), {}, Bracket(3, 4));
    const TempFolder wide;
    const SyntheticSeries large = PlainSeries(wide, 1501, 100, 2);
    const int nRounds = InForm(30, 500), nWarm = 5;
    long nMemory = 0;
    std::size_t nDescriptors = 0;
    for (int i = 0; i < nRounds; ++i) {
        const Results results = ResultsOf(i % 2 ? small : large);
        ASSERT_FALSE(results.mapped.empty());
        ASSERT_TRUE(i % 10 != 1 || Merge(small, Curves::Recovered));
        ASSERT_TRUE(SaveCurves(folder.File("out.crv").c_str()));
        std::int32_t nWidth = 0, nHeight = 0;
        LS::Util::PixelBuffer pPixels = MapWithProgress(nWidth, nHeight);
        wxImage image(nWidth, nHeight, pPixels.release());
        for (const LdrFormat format :
             {LdrFormat::Jpeg, LdrFormat::Png, LdrFormat::Tiff, LdrFormat::Bmp, LdrFormat::Targa})
            ASSERT_EQ(LdrOutcome::Saved, SaveLdr(image, folder.File("out"), format, {}));
        if (i == nWarm) {
            nMemory = MemoryInUse("VmRSS:");
            nDescriptors = OpenDescriptors();
        }
    }
    ResetWorkspace();
    EXPECT_EQ(nDescriptors, OpenDescriptors());
    const long nGrown = MemoryInUse("VmRSS:") - nMemory;
    std::printf("%d rounds: %ld KiB, grown by %ld\n", nRounds, nMemory, nGrown);
#ifndef __SANITIZE_ADDRESS__ // which keeps what was freed for a while
    EXPECT_GT(4096, nGrown) << "one lost preview a round would be tens of megabytes";
#endif
}
