// Cache files that are cut, swapped or removed under the hands of the engine.
#include "Util/FailureLog.h"
#include "Util/PixelBuffer.h"
#include "engine/HDRRoutine.h"
#include "engine/HDRWorkspace.h"
#include "image/SourceCache.h"
#include "tests/faults/Form.h"
#include "tests/faults/MergeFixture.h"

#include <gtest/gtest.h>
#include <wx/image.h>

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
};

void PutPipe(const std::string& sPath)
{
    fs::remove(sPath);
    ASSERT_EQ(0, mkfifo(sPath.c_str(), 0600));
}

constexpr Mishap MISHAPS[] = {
    {"removed", [](const std::string& sPath) { fs::remove(sPath); }},
    {"emptied", [](const std::string& sPath) { fs::resize_file(sPath, 0); }},
    {"cut in the middle", [](const std::string& sPath) { fs::resize_file(sPath, fs::file_size(sPath) / 2); }},
    {"one byte short", [](const std::string& sPath) { fs::resize_file(sPath, fs::file_size(sPath) - 1); }},
    {"longer", [](const std::string& sPath) { fs::resize_file(sPath, fs::file_size(sPath) + 100'000); }},
    {"a folder", [](const std::string& sPath) { fs::remove(sPath), fs::create_directory(sPath); }},
    {"a pipe", PutPipe},
    {"a device", [](const std::string& sPath) { fs::remove(sPath), fs::create_symlink("/dev/zero", sPath); }},
    {"a link to itself",
     [](const std::string& sPath) { fs::remove(sPath), fs::create_symlink(sPath, sPath); }},
};

/// Fails the test if a scope takes long.
class Deadline {
public:
    Deadline() = default;
    Deadline(const Deadline&) = delete;
    Deadline& operator=(const Deadline&) = delete;
    ~Deadline() { EXPECT_GT(std::chrono::seconds(10), std::chrono::steady_clock::now() - m_start); }

private:
    std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
};

class CacheFiles : public testing::Test {
protected:
    void SetUp() override
    {
        m_previous = LS::Util::SetFailureSink([this](const std::string&) { ++m_nLines; });
    }
    void TearDown() override
    {
        LS::Util::SetFailureSink(m_previous);
        ResetWorkspace();
    }

    LS::Util::FailureSink m_previous;
    int m_nLines = 0;
};

} // namespace

namespace {

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

TEST_F(CacheFiles, OfSourcesMayChangeAtAnyMoment)
{
    const SyntheticScene scene = RenderScene(WIDTH, HEIGHT);
    int nFailed = 0;
    for (const Mishap& mishap : MISHAPS)
        for (const Curves curves : {Curves::Standard, Curves::Recovered})
            for (const int nAt : PositionsOf(curves)) {
                SCOPED_TRACE(testing::Message() << mishap.szName << " at " << nAt);
                const TempFolder folder;
                const SyntheticSeries series = Photograph(folder, scene, {}, Bracket(3, 4));
                const std::string sLast = folder.File("source2.tmp");
                ActingProgress progress(nAt, [&] { mishap.befall(sLast); });
                if (nAt < 0)
                    progress.Update(0, {}, nullptr);
                m_nLines = 0;
                const Deadline deadline;
                const auto preview = Merge(series, curves, &progress);
                EXPECT_EQ(preview.has_value(), !Workspace().sHDRFile.empty());
                EXPECT_EQ(preview.has_value(), m_nLines == 0);
                if (nAt < 0 && std::string(mishap.szName) != "longer") {
                    EXPECT_FALSE(preview);
                }
                nFailed += !preview;
            }
    EXPECT_LT(20, nFailed);
}

TEST_F(CacheFiles, OfTheResultMayChangeAtAnyMoment)
{
    const TempFolder folder;
    const SyntheticSeries small = Photograph(folder, RenderScene(WIDTH, HEIGHT), {}, Bracket(3, 4));
    const TempFolder wide;
    const SyntheticSeries large = PlainSeries(wide, 1501, 12, 2); // its luminance goes through a file
    for (const SyntheticSeries* pSeries : {&small, &large})
        for (const Mishap& mishap : MISHAPS)
            for (const int nAt : {-1, 0, 30, 60, 90}) {
                SCOPED_TRACE(testing::Message()
                             << mishap.szName << " at " << nAt << ", width " << pSeries->nWidth);
                for (const int nStep : {0, 1, 2, 3}) { // three writers, and the tone mapper
                    ASSERT_TRUE(Merge(*pSeries, Curves::Standard));
                    const std::string sFloats = FloatCachePath();
                    ActingProgress progress(nAt, [&] { mishap.befall(sFloats); });
                    if (nAt < 0)
                        progress.Update(0, {}, nullptr);
                    ProgbarSetter setter = progress.Setter();
                    m_nLines = 0;
                    const Deadline deadline;
                    std::int32_t nWidth = 0, nHeight = 0;
                    const bool bDone =
                        nStep < 3 ? SaveHDRFile(folder.File("out").c_str(), nStep, &setter)
                                  : LS::Util::PixelBuffer(ToneMapFull(0, 2.2F, &nWidth, &nHeight, &setter)) !=
                                        nullptr;
                    EXPECT_EQ(bDone, m_nLines == 0);
                    if (nAt < 0 && std::string(mishap.szName) != "longer") {
                        EXPECT_FALSE(bDone);
                    }
                    // The preview lives in memory.
                    EXPECT_TRUE(LS::Util::PixelBuffer(ToneMapScaled(0, 2.2F, &nWidth, &nHeight)));
                    fs::remove_all(sFloats);
                    fs::remove_all(folder.File("out"));
                }
            }
}

TEST_F(CacheFiles, InThePlacesOfNewOnesAreNoTrap)
{
    const wxImage picture(8, 8);
    for (const Mishap& mishap : MISHAPS) {
        const std::string sName = mishap.szName;
        if (sName == "removed" || sName == "emptied" || sName == "one byte short" ||
            sName.starts_with("cut") || sName == "longer")
            continue; // these are files, and replaced
        SCOPED_TRACE(sName);
        const TempFolder folder;
        WriteText(folder.File("a.tmp"), "x");
        mishap.befall(folder.File("a.tmp"));
        const Deadline deadline;
        EXPECT_FALSE(WriteSourceCacheFile(picture, folder.File("a.tmp"), {}));
        EXPECT_EQ(1, m_nLines);
        m_nLines = 0;
    }
}
