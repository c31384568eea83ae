// Curve files and the built-in curve, as callers get them.
#include "engine/HDRRoutine.h"

#include "engine/HDRWorkspace.h"
#include "engine/ResponseCurve.h"
#include "tests/support/FailureRecorder.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <sys/stat.h>

using namespace LS::Tests;

namespace {

/// Curves in the form of the engine's interface, freed at the end of the test.
struct LoadedCurves {
    ~LoadedCurves()
    {
        for (const float* pCurve : curves)
            delete[] pCurve;
    }
    std::vector<float*> curves;
};

std::vector<float> Counting(std::size_t nCount)
{
    std::vector<float> vfValues(nCount);
    for (std::size_t i = 0; i < nCount; ++i)
        vfValues[i] = static_cast<float>(i) + 0.5F;
    return vfValues;
}

} // namespace

TEST(LoadCurves, NullGivesTheStandardCurve)
{
    LoadedCurves loaded;
    ASSERT_TRUE(LoadCurves(nullptr, loaded.curves));
    ASSERT_EQ(3U, loaded.curves.size());
    for (const float* pCurve : loaded.curves)
        EXPECT_TRUE(std::equal(StandardCurve().begin(), StandardCurve().end(), pCurve));
}

TEST(LoadCurves, MissingBytesAreZeroAndSurplusIsIgnored)
{
    const TempFolder folder;
    const std::vector<float> vfAll = Counting(CURVE_CHANNELS * CURVE_ENTRIES + 10);
    for (const std::size_t nBytes : {0, 3, 100, 1024, 2500, 3072, 3100}) {
        SCOPED_TRACE(nBytes);
        WriteBytes(folder.File("c.crv"), vfAll.data(), nBytes);
        LoadedCurves loaded;
        ASSERT_TRUE(LoadCurves(folder.File("c.crv").c_str(), loaded.curves));
        ASSERT_EQ(3U, loaded.curves.size());
        for (std::size_t i = 0; i < CURVE_CHANNELS * CURVE_ENTRIES; ++i) {
            const std::size_t nGiven = std::min(nBytes - std::min(nBytes, i * sizeof(float)), sizeof(float));
            float fExpected = 0; // with as many of its bytes as the file holds
            std::memcpy(&fExpected, &vfAll[i], nGiven);
            ASSERT_EQ(fExpected, loaded.curves[i / CURVE_ENTRIES][i % CURVE_ENTRIES]) << i;
        }
    }
}

TEST(LoadCurves, WhatCannotBeReadGivesFalseAndALogLine)
{
    const TempFolder folder;
    ASSERT_EQ(0, mkfifo(folder.File("pipe").c_str(), 0600));
    std::filesystem::create_directory(folder.File("folder"));
    for (const char* szName : {"missing.crv", "pipe", "folder"}) {
        SCOPED_TRACE(szName);
        const FailureRecorder log;
        LoadedCurves loaded;
        EXPECT_FALSE(LoadCurves(folder.File(szName).c_str(), loaded.curves));
        EXPECT_TRUE(loaded.curves.empty());
        EXPECT_EQ(1U, log.Lines().size());
    }
}

TEST(SaveCurves, WritesWhatLoadCurvesReads)
{
    const TempFolder folder;
    const std::string sFile = folder.File("c.crv");
    EXPECT_FALSE(SaveCurves(sFile.c_str())) << "the workspace is empty";

    const std::vector<float> vfAll = Counting(CURVE_CHANNELS * CURVE_ENTRIES);
    for (std::size_t c = 0; c < CURVE_CHANNELS; ++c) {
        Workspace().vafCurves.push_back(new float[CURVE_ENTRIES]);
        std::copy_n(vfAll.data() + c * CURVE_ENTRIES, CURVE_ENTRIES, Workspace().vafCurves.back());
    }
    EXPECT_FALSE(SaveCurves(nullptr));
    {
        const FailureRecorder log;
        EXPECT_FALSE(SaveCurves(folder.File("missing/c.crv").c_str()));
        EXPECT_EQ(1U, log.Lines().size());
    }
    EXPECT_TRUE(SaveCurves(sFile.c_str()));
    ResetWorkspace();

    EXPECT_EQ(3072U, std::filesystem::file_size(sFile));
    LoadedCurves loaded;
    ASSERT_TRUE(LoadCurves(sFile.c_str(), loaded.curves));
    for (std::size_t i = 0; i < vfAll.size(); ++i)
        ASSERT_EQ(vfAll[i], loaded.curves[i / CURVE_ENTRIES][i % CURVE_ENTRIES]);
}
