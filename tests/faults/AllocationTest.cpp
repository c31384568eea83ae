// Every allocation of every operation fails once: the result is whole, or there is none.
#include "HDRFile/FloatTiff.h"
#include "HDRFile/OpenExr.h"
#include "HDRFile/Radiance.h"
#include "tests/HDRFile/CachePicture.h"
#include "tests/faults/Form.h"
#include "tests/faults/MergeFixture.h"
#include "tests/faults/shim/FailingSystem.h"
#include "tests/support/FailureRecorder.h"
#include "tests/support/RgbeReader.h"

#include <algorithm>
#include <new>

using namespace LS::Tests;

namespace {

using Operation = std::function<bool()>;

/// Runs an operation with a call that fails: it either says true and leaves something whole, or that call
/// came.
/// @return whether it came
bool Met(const char* szKind, long nCall, bool bLasting, const Operation& operation, const Operation& isWhole,
         int& nFailed)
{
    bool bDone = false;
    LetCallsFail(szKind, nCall, bLasting);
    try {
        bDone = operation();
    } catch (const std::bad_alloc&) { // which the commands catch
    }
    const bool bMet = EndFailing();
    nFailed += !bDone;
    EXPECT_TRUE(bDone ? isWhole() : bMet) << szKind << " " << nCall << (bLasting ? " and all after" : "");
    return bMet;
}

/// Runs an operation again and again, each time with one more call before the one that fails, alone or with
/// all later ones. Of each kind some failures must be noticed.
/// @param isWhole  looks at what a run left that said true
void Sweep(std::initializer_list<const char*> kinds, const Operation& operation, const Operation& isWhole)
{
    const FailureRecorder silence;
    testing::internal::CaptureStderr(); // where the Radiance writer reports each fault
    for (const char* szKind : kinds)
        for (const bool bLasting : {false, true}) {
            int nFailed = 0;
            for (long nCall = 1;
                 Met(szKind, nCall, bLasting, operation, isWhole, nFailed) && !testing::Test::HasFailure();)
                ++nCall;
            EXPECT_LT(0, nFailed) << szKind;
        }
    testing::internal::GetCapturedStderr();
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
    for (const auto write : {WriteOpenExrFile, WriteRadianceFile, WriteFloatTiffFile}) {
        const std::string sPath = cache.File("out");
        const bool bRadiance = write == WriteRadianceFile; // flat rows where the planes find no memory
        const Operation save = [&] {
            return write(cache.sPath.c_str(), sPath.c_str(), cache.nWidth, cache.nHeight, nullptr);
        };
        ASSERT_TRUE(save());
        const Bytes whole = Content(sPath, bRadiance);
        Sweep({"malloc", "write", "read", "close"}, save, [&] { return whole == Content(sPath, bRadiance); });
    }
}

namespace {

using FailingEngine = MergeFixture;

} // namespace

TEST_F(FailingEngine, MergesWholeOrNotAtAll)
{
    Photograph(60, 40, 3, 4);
    ASSERT_TRUE(Merge());
    const Bytes whole = ReadBytes(FloatCachePath());
    ASSERT_EQ(60U * 40 * 12, whole.size());
    Sweep(
        {"malloc", "write", "read", "close"}, [this] { return Merge(); },
        [&] { return ReadBytes(FloatCachePath()) == whole; });
}

TEST_F(FailingEngine, RecoversWholeOrNotAtAll)
{
    Photograph(60, 40, 3, 4);
    const Operation recover = [this] {
        OwnedCurves curves;
        return Recover(curves);
    };
    const Operation any = [] { return true; };
    Sweep({"read"}, recover, any);
    // Each run solves for tenths of a second.
    const FailureRecorder silence;
    int nFailed = 0;
    for (long n = 1; n < 4000 && Met("malloc", n, false, recover, any, nFailed); n += InForm(401, 1)) {
    }
}

TEST_F(FailingEngine, MapsWholeOrNotAtAll)
{
    Photograph(60, 40, 3, 4);
    ASSERT_TRUE(Merge());
    const Bytes whole = MapFull(nullptr);
    LS::Util::PixelBuffer pPixels;
    const Operation map = [&] {
        pPixels.reset(::ToneMapFull(0, 2.2F, &nOutWidth, &nOutHeight, nullptr));
        return pPixels != nullptr;
    };
    Sweep({"malloc", "read"}, map, [&] { return std::equal(whole.begin(), whole.end(), pPixels.get()); });
}
