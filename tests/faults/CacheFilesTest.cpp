// Cache files that are cut, swapped or removed under the hands of the engine.
#include "tests/faults/Devices.h"
#include "tests/faults/Form.h"
#include "tests/faults/MergeFixture.h"
#include "tests/support/FailureRecorder.h"

#include <wx/string.h>

#include <chrono>
#include <filesystem>
#include <sys/stat.h>

using namespace LS::Tests;
namespace fs = std::filesystem;

namespace {

/// What happens to a file.
struct Mishap {
    const char* szName;
    void (*befall)(const std::string& sPath);
    bool bHarms = true;
};

constexpr Mishap MISHAPS[] = {
    {"removed", [](const std::string& sPath) { fs::remove(sPath); }},
    {"one byte short", [](const std::string& sPath) { fs::resize_file(sPath, fs::file_size(sPath) - 1); }},
    {"longer", [](const std::string& sPath) { fs::resize_file(sPath, fs::file_size(sPath) + 100'000); },
     false},
    {"a folder", [](const std::string& sPath) { fs::remove(sPath), fs::create_directory(sPath); }},
    {"a pipe", [](const std::string& sPath) { fs::remove(sPath), mkfifo(sPath.c_str(), 0600); }},
    {"a device", [](const std::string& sPath) { fs::remove(sPath), PutDevice(sPath, ZERO_DEVICE); }},
    {"a link to itself",
     [](const std::string& sPath) { fs::remove(sPath), fs::create_symlink(sPath, sPath); }},
};

class CacheFiles : public MergeFixture {
protected:
    /// Does something that must not take long, and either succeeds or leaves a line in the log.
    static bool Attempt(bool bMayBeDone, const std::function<bool()>& attempt)
    {
        const FailureRecorder failures;
        const auto start = std::chrono::steady_clock::now();
        const bool bDone = attempt();
        EXPECT_GT(std::chrono::seconds(10), std::chrono::steady_clock::now() - start);
        EXPECT_EQ(bDone, failures.Lines().empty());
        EXPECT_TRUE(bMayBeDone || !bDone);
        return bDone;
    }
};

/// Positions before the start, and within recovery, merge and preview.
std::vector<int> PositionsOf(CurveKind curves)
{
    if (curves == CurveKind::Standard || IsLongForm())
        return {-1, 0, 5, 40, 80, 81, 85, 96};
    return {-1, 2}; // before the solving, which takes half a second
}

} // namespace

TEST_F(CacheFiles, OfSourcesMayChangeAtAnyMoment)
{
    const SyntheticScene scene = RenderScene(60, 40);
    for (const Mishap& mishap : MISHAPS)
        for (const CurveKind curves : {CurveKind::Standard, CurveKind::Recovered})
            for (const int nAt : PositionsOf(curves)) {
                SCOPED_TRACE(testing::Message() << mishap.szName << " at " << nAt);
                fs::remove_all(folder.File("source2.tmp"));
                Photograph(scene, 3, 4);
                ActingProgress progress(nAt, [&] { mishap.befall(File(2)); });
                if (nAt < 0)
                    progress.Update(0, {}, nullptr);
                const bool bDone =
                    Attempt(nAt >= 0 || !mishap.bHarms, [&] { return !Preview(curves, &progress).empty(); });
                EXPECT_EQ(bDone, !Workspace().sHDRFile.empty());
            }
}

TEST_F(CacheFiles, OfTheResultMayChangeAtAnyMoment)
{
    for (const bool bLarge : {false, true}) {
        if (bLarge)
            TakeGradients(1501, 12, 2); // its luminance goes through a file
        else
            Photograph(60, 40, 3, 4);
        for (const Mishap& mishap : MISHAPS)
            for (const int nAt : {-1, 0, 30, 60, 90})
                for (const int nStep : {0, 1, 2, 3}) { // three writers, and the tone mapper
                    SCOPED_TRACE(testing::Message()
                                 << mishap.szName << " at " << nAt << ", step " << nStep << ", " << bLarge);
                    ASSERT_TRUE(Merge());
                    const std::string sFloats = FloatCachePath();
                    ActingProgress progress(nAt, [&] { mishap.befall(sFloats); });
                    if (nAt < 0)
                        progress.Update(0, {}, nullptr);
                    ProgbarSetter setter = progress.Setter();
                    Attempt(nAt >= 0 || !mishap.bHarms, [&] {
                        return nStep < 3 ? SaveHDRFile(folder.File("out").c_str(), nStep, &setter)
                                         : !MapFull(&setter).empty();
                    });
                    EXPECT_FALSE(Taken(ToneMapScaled(0, 2.2F, &nOutWidth, &nOutHeight)).empty())
                        << "the preview lives in memory";
                    fs::remove_all(sFloats);
                }
    }
}
