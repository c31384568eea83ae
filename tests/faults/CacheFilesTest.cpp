// Cache files that are cut, swapped or removed under the hands of the engine.
#include "engine/HDRRoutine.h"
#include "engine/HDRWorkspace.h"
#include "tests/faults/Devices.h"
#include "tests/faults/Form.h"
#include "tests/faults/MergeFixture.h"
#include "tests/support/FailureRecorder.h"

#include <gtest/gtest.h>
#include <wx/string.h>

#include <chrono>
#include <filesystem>
#include <sys/stat.h>

using namespace LS::Tests;
namespace fs = std::filesystem;

namespace {

constexpr std::int32_t WIDTH = 60, HEIGHT = 40;

/// What happens to a file.
struct Mishap {
    const char* szName;
    void (*befall)(const std::string& sPath);
    bool bHarms = true;
};

constexpr Mishap MISHAPS[] = {
    {"removed", [](const std::string& sPath) { fs::remove(sPath); }},
    {"emptied", [](const std::string& sPath) { fs::resize_file(sPath, 0); }},
    {"one byte short", [](const std::string& sPath) { fs::resize_file(sPath, fs::file_size(sPath) - 1); }},
    {"longer", [](const std::string& sPath) { fs::resize_file(sPath, fs::file_size(sPath) + 100'000); },
     false},
    {"a folder", [](const std::string& sPath) { fs::remove(sPath), fs::create_directory(sPath); }},
    {"a pipe", [](const std::string& sPath) { fs::remove(sPath), mkfifo(sPath.c_str(), 0600); }},
    {"a device", [](const std::string& sPath) { fs::remove(sPath), PutDevice(sPath, ZERO_DEVICE); }},
    {"a link to itself",
     [](const std::string& sPath) { fs::remove(sPath), fs::create_symlink(sPath, sPath); }},
};

/// One attempt: it must not take long, and it either succeeds or leaves a line in the log.
class Attempt {
public:
    Attempt() = default;
    Attempt(const Attempt&) = delete;
    Attempt& operator=(const Attempt&) = delete;
    ~Attempt() { EXPECT_GT(std::chrono::seconds(10), std::chrono::steady_clock::now() - m_start); }

    void ExpectClear(bool bDone, bool bMayBeDone) const
    {
        EXPECT_EQ(bDone, m_failures.Lines().empty());
        EXPECT_TRUE(bMayBeDone || !bDone);
    }

private:
    FailureRecorder m_failures;
    std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
};

/// Positions before the start, and within recovery, merge and preview.
std::vector<int> PositionsOf(Curves curves)
{
    if (curves == Curves::Standard)
        return {-1, 0, 5, 40, 80, 81, 85, 96};
    if (IsLongForm())
        return {-1, 0, 2, 4, 10, 40, 80, 81, 85, 96, 99};
    return {-1, 2}; // before the solving, which takes half a second
}

} // namespace

TEST(CacheFiles, OfSourcesMayChangeAtAnyMoment)
{
    const SyntheticScene scene = RenderScene(WIDTH, HEIGHT);
    int nFailed = 0;
    for (const Mishap& mishap : MISHAPS)
        for (const Curves curves : {Curves::Standard, Curves::Recovered})
            for (const int nAt : PositionsOf(curves)) {
                SCOPED_TRACE(testing::Message() << mishap.szName << " at " << nAt);
                const TempFolder folder;
                const SyntheticSeries series = Photograph(folder, scene, {}, Bracket(3, 4));
                ActingProgress progress(nAt, [&] { mishap.befall(folder.File("source2.tmp")); });
                if (nAt < 0)
                    progress.Update(0, {}, nullptr);
                const Attempt attempt;
                const auto preview = Merge(series, curves, &progress);
                attempt.ExpectClear(preview.has_value(), nAt >= 0 || !mishap.bHarms);
                EXPECT_EQ(preview.has_value(), !Workspace().sHDRFile.empty());
                nFailed += !preview;
            }
    EXPECT_LT(20, nFailed);
    ResetWorkspace();
}

TEST(CacheFiles, OfTheResultMayChangeAtAnyMoment)
{
    const TempFolder folder, wide;
    const SyntheticSeries small = Photograph(folder, RenderScene(WIDTH, HEIGHT), {}, Bracket(3, 4));
    const SyntheticSeries large = PlainSeries(wide, 1501, 12, 2); // its luminance goes through a file
    for (const SyntheticSeries* pSeries : {&small, &large})
        for (const Mishap& mishap : MISHAPS)
            for (const int nAt : {-1, 0, 30, 60, 90})
                for (const int nStep : {0, 1, 2, 3}) { // three writers, and the tone mapper
                    SCOPED_TRACE(testing::Message()
                                 << mishap.szName << " at " << nAt << ", width " << pSeries->nWidth);
                    ASSERT_TRUE(Merge(*pSeries, Curves::Standard));
                    const std::string sFloats = FloatCachePath();
                    ActingProgress progress(nAt, [&] { mishap.befall(sFloats); });
                    if (nAt < 0)
                        progress.Update(0, {}, nullptr);
                    ProgbarSetter setter = progress.Setter();
                    const Attempt attempt;
                    std::int32_t nWidth = 0, nHeight = 0;
                    const bool bDone = nStep < 3 ? SaveHDRFile(folder.File("out").c_str(), nStep, &setter)
                                                 : MapWithProgress(nWidth, nHeight, &progress) != nullptr;
                    attempt.ExpectClear(bDone, nAt >= 0 || !mishap.bHarms);
                    EXPECT_TRUE(LS::Util::PixelBuffer(ToneMapScaled(0, 2.2F, &nWidth, &nHeight)))
                        << "the preview lives in memory";
                    fs::remove_all(sFloats);
                }
    ResetWorkspace();
}
