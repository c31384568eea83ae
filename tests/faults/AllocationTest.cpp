// Every allocation of every operation fails once: the result is whole, or there is none.
#include "HDRFile/FloatTiff.h"
#include "HDRFile/OpenExr.h"
#include "HDRFile/Radiance.h"
#include "Util/PixelBuffer.h"
#include "engine/HDRRoutine.h"
#include "engine/HDRWorkspace.h"
#include "engine/OwnedCurves.h"
#include "tests/HDRFile/CachePicture.h"
#include "tests/faults/Form.h"
#include "tests/faults/shim/FailingSystem.h"
#include "tests/support/FailureRecorder.h"
#include "tests/support/RgbeReader.h"
#include "tests/support/SyntheticSeries.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <new>
#include <optional>

using namespace LS::Tests;

namespace {

using Operation = std::function<bool()>;

/// @return what the operation says; nothing if it threw for want of memory
std::optional<bool> Outcome(const Operation& operation)
{
    try {
        return operation();
    } catch (const std::bad_alloc&) {
        return std::nullopt;
    }
}

/// Runs an operation again and again, each time with one more call before the one that fails.
/// @param bLasting  all later calls fail as well
/// @param isWhole   looks at what a run left that said true
void Sweep(const char* szKind, bool bLasting, const Operation& operation, const Operation& isWhole)
{
    const auto silence = LS::Util::SetFailureSink([](const std::string&) {});
    testing::internal::CaptureStderr(); // where the Radiance writer tells of each fault
    bool bMet = true;
    int nFailed = 0;
    for (long n = 1; bMet && !testing::Test::HasFailure(); ++n) {
        LetCallsFail(szKind, n, bLasting);
        const auto outcome = Outcome(operation);
        bMet = EndFailing();
        nFailed += outcome != true;
        if (outcome == true) {
            EXPECT_TRUE(isWhole()) << szKind << " " << n << " " << bLasting;
        } else {
            EXPECT_TRUE(bMet) << szKind << " " << n << " " << bLasting << ": failed by itself";
        }
    }
    EXPECT_LT(0, nFailed);
    testing::internal::GetCapturedStderr();
    LS::Util::SetFailureSink(silence);
}

void Sweep(const char* szKind, const Operation& operation, const Operation& isWhole)
{
    for (const bool bLasting : {false, true})
        Sweep(szKind, bLasting, operation, isWhole);
}

/// A file's bytes, or what they stand for where the same picture may be encoded in two ways.
Bytes Content(const std::string& sPath, bool bRadiance)
{
    Bytes bytes = ReadBytes(sPath);
    if (!bRadiance)
        return bytes;
    Bytes pixels;
    for (const Rgbe& pixel : ReadRgbe(bytes).vPixels)
        pixels.insert(pixels.end(), pixel.begin(), pixel.end());
    return pixels;
}

} // namespace

TEST(FailingAllocations, OfTheWriters)
{
    const CachePicture cache(20, 40);
    const struct {
        const char* szName;
        bool (*write)(const char*, const char*, std::int32_t, std::int32_t, ProgbarSetter*);
    } writers[] = {{"x.exr", WriteOpenExrFile}, {"x.hdr", WriteRadianceFile}, {"x.tif", WriteFloatTiffFile}};
    for (const auto& writer : writers) {
        SCOPED_TRACE(writer.szName);
        const std::string sPath = cache.File(writer.szName);
        const bool bRadiance = writer.write == WriteRadianceFile; // flat rows where the planes find no memory
        const Operation write = [&] {
            return writer.write(cache.sPath.c_str(), sPath.c_str(), cache.nWidth, cache.nHeight, nullptr);
        };
        ASSERT_TRUE(write());
        const Bytes whole = Content(sPath, bRadiance);
        for (const char* szKind : {"malloc", "write", "read", "close"})
            Sweep(szKind, write, [&] { return whole == Content(sPath, bRadiance); });
    }
}

namespace {

class FailingEngine : public testing::Test {
protected:
    bool Merge()
    {
        ResetWorkspace();
        OwnedCurves curves;
        if (!LoadCurves(nullptr, curves.Get()) ||
            !MergeExposures(m_series.vsFiles, m_series.nWidth, m_series.nHeight, m_series.vfShutters,
                            m_series.vfStops, m_series.vfGains, m_series.vfNDs, curves.Get(), nullptr,
                            &Workspace()))
            return false;
        curves.Release();
        return true;
    }

    Bytes Floats() const { return ReadBytes(std::filesystem::path(Workspace().sHDRFile).native()); }

    TempFolder m_folder;
    SyntheticSeries m_series = Photograph(m_folder, RenderScene(60, 40), {}, Bracket(3, 4));
};

} // namespace

TEST_F(FailingEngine, MergesWholeOrNotAtAll)
{
    ASSERT_TRUE(Merge());
    const Bytes whole = Floats();
    ASSERT_EQ(60U * 40 * 12, whole.size());
    for (const char* szKind : {"malloc", "write", "read", "close"})
        Sweep(
            szKind, [this] { return Merge(); }, [&] { return Floats() == whole; });
    ResetWorkspace();
}

TEST_F(FailingEngine, RecoversWholeOrNotAtAll)
{
    std::vector<std::vector<float>> vvfFirst;
    const auto recover = [&](bool bKeep) {
        OwnedCurves curves;
        if (!CalculateCurves(m_series.vsFiles, m_series.nWidth, m_series.nHeight, m_series.vfShutters,
                             m_series.vfStops, m_series.vfGains, m_series.vfNDs, curves.Get(), nullptr))
            return false;
        for (std::size_t c = 0; bKeep && c < curves.Get().size(); ++c)
            vvfFirst.emplace_back(curves.Get()[c], curves.Get()[c] + 256);
        return curves.Get().size() == 3;
    };
    ASSERT_TRUE(recover(true));
    Sweep(
        "read", [&] { return recover(false); }, [] { return true; });
    // Each run solves for tenths of a second.
    for (long n = 1; n < 4000; n += InForm(401, 1)) {
        LetCallsFail("malloc", n, false);
        const auto outcome = Outcome([&] { return recover(false); });
        const bool bMet = EndFailing();
        EXPECT_TRUE(outcome == true || bMet);
        if (!bMet)
            break;
    }
}

TEST_F(FailingEngine, MapsWholeOrNotAtAll)
{
    ASSERT_TRUE(Merge());
    std::int32_t nWidth = 0, nHeight = 0;
    Bytes pixels;
    const Operation map = [&] {
        LS::Util::PixelBuffer pPixels(ToneMapFull(0, 2.2F, &nWidth, &nHeight, nullptr));
        if (!pPixels)
            return false;
        std::copy_n(pPixels.get(), pixels.size(), pixels.begin());
        return true;
    };
    pixels.resize(std::size_t{60} * 40 * 3);
    ASSERT_TRUE(map());
    const Bytes whole = pixels;
    for (const char* szKind : {"malloc", "read"})
        Sweep(szKind, map, [&] { return pixels == whole; });
    ResetWorkspace();
}

TEST_F(FailingEngine, SavesCurvesWholeOrShort)
{
    ASSERT_TRUE(Merge());
    const std::string sPath = m_folder.File("x.crv");
    // The result stays true after a failed write; a reader takes the missing bytes as zeros.
    Sweep(
        "malloc", [&] { return SaveCurves(sPath.c_str()); }, [&] { return ReadBytes(sPath).size() <= 3072; });
    ResetWorkspace();
}
