// Curve files and the built-in curve, as callers get them.
#include "engine/HDRRoutine.h"

#include "engine/HDRWorkspace.h"
#include "engine/OwnedCurves.h"
#include "engine/ResponseCurve.h"
#include "tests/support/FailureRecorder.h"
#include "tests/support/ResourceLimit.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <numeric>
#include <sys/stat.h>

using namespace LS::Tests;

TEST(LoadCurves, NullGivesTheStandardCurve)
{
    OwnedCurves loaded;
    ASSERT_TRUE(LoadCurves(nullptr, loaded.Get()));
    ASSERT_EQ(3U, loaded.Get().size());
    for (const float* pCurve : loaded.Get()) {
        EXPECT_EQ(0.0001F, pCurve[0]);
        EXPECT_EQ(0.000950147F, pCurve[1]);
        EXPECT_EQ(3.24911F, pCurve[128]);
        EXPECT_EQ(10.4862F, pCurve[255]);
        EXPECT_TRUE(std::is_sorted(pCurve, pCurve + CURVE_ENTRIES));
    }
}

TEST(LoadCurves, WhatCannotBeReadGivesFalseAndALogLine)
{
    const TempFolder folder;
    ASSERT_EQ(0, mkfifo(folder.File("pipe").c_str(), 0600));
    for (const char* szName : {"missing.crv", "pipe"}) {
        SCOPED_TRACE(szName);
        const FailureRecorder log;
        OwnedCurves loaded;
        EXPECT_FALSE(LoadCurves(folder.File(szName).c_str(), loaded.Get()));
        EXPECT_TRUE(loaded.Get().empty());
        EXPECT_EQ(1U, log.Lines().size());
    }
}

TEST(SaveCurves, WritesWhatLoadCurvesReads)
{
    const TempFolder folder;
    const std::string sFile = folder.File("c.crv");
    EXPECT_FALSE(SaveCurves(sFile.c_str())) << "the workspace is empty";
    for (std::size_t c = 0; c < CURVE_CHANNELS; ++c) {
        Workspace().vafCurves.push_back(new float[CURVE_ENTRIES]);
        std::iota(Workspace().vafCurves.back(), Workspace().vafCurves.back() + CURVE_ENTRIES,
                  1000.5F * static_cast<float>(c + 1));
    }
    {
        const FailureRecorder log;
        EXPECT_FALSE(SaveCurves(folder.File("missing/c.crv").c_str()));
        const ResourceLimit fullDisk(RLIMIT_FSIZE, 100);
        EXPECT_TRUE(SaveCurves(sFile.c_str())) << "whoever wants to know reads the file back";
        EXPECT_EQ(2U, log.Lines().size());
    }
    EXPECT_TRUE(SaveCurves(sFile.c_str()));
    EXPECT_EQ(3072U, std::filesystem::file_size(sFile));
    OwnedCurves loaded;
    ASSERT_TRUE(LoadCurves(sFile.c_str(), loaded.Get()));
    for (std::size_t c = 0; c < CURVE_CHANNELS; ++c)
        EXPECT_TRUE(std::equal(loaded.Get()[c], loaded.Get()[c] + CURVE_ENTRIES, Workspace().vafCurves[c]));
    ResetWorkspace();
}
