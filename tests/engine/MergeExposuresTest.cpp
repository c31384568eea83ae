// The merge of a series: files in, float cache file and workspace out, and nothing half-filled.
#include "engine/HDRRoutine.h"

#include "Util/Paths.h"
#include "engine/CacheFolder.h"
#include "engine/ExposureMerge.h"
#include "engine/HDRWorkspace.h"
#include "engine/ResponseCurve.h"
#include "tests/support/FailureRecorder.h"
#include "tests/support/RecordingProgress.h"
#include "tests/support/ResourceLimit.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <random>
#include <sys/resource.h>
#include <sys/stat.h>

using namespace LS::Tests;
namespace fs = std::filesystem;

namespace {

/// Source cache files of random bytes, and all other arguments of a merge.
class Series {
public:
    Series(std::int32_t nWidth, std::int32_t nHeight, std::size_t nImages)
        : m_nWidth(nWidth), m_nHeight(nHeight)
    {
        std::mt19937 random(3); // NOLINT(bugprone-random-generator-seed): the same bytes each run
        for (std::size_t i = 0; i < nImages; ++i) {
            Bytes bytes(4 * static_cast<std::size_t>(nWidth) * static_cast<std::size_t>(nHeight));
            for (unsigned char& byte : bytes)
                byte = static_cast<unsigned char>(random());
            WriteElements(File(i), bytes);
            m_vImages.push_back(bytes);
            m_vsFiles.push_back(LS::Util::WidePath(File(i)));
            m_vfShutters.push_back(std::exp2(static_cast<float>(i)) / 100);
        }
        LoadCurves(nullptr, m_vafCurves);
    }
    Series(const Series&) = delete;
    Series& operator=(const Series&) = delete;
    ~Series()
    {
        if (!m_bMerged) // else the workspace owns the curves
            for (const float* pCurve : m_vafCurves)
                delete[] pCurve;
        ResetWorkspace();
    }

    std::string File(std::size_t i) const { return m_folder.File("image" + std::to_string(i) + ".tmp"); }

    bool Merge(ProgbarSetter* pProgress = nullptr)
    {
        const std::vector<float> vfStops(m_vsFiles.size(), 8), vfGains(m_vsFiles.size(), 3);
        const std::vector<float> vfNDs(m_vsFiles.size(), 0);
        m_bMerged = MergeExposures(m_vsFiles, m_nWidth, m_nHeight, m_vfShutters, vfStops, vfGains, vfNDs,
                                   m_vafCurves, pProgress, &Workspace());
        return m_bMerged;
    }

    /// Pixels of row y as MergeRow gives them.
    std::vector<float> ExpectedRow(std::int32_t y) const
    {
        std::vector<float> vfExposures, vfWeights;
        ExposureList(m_vfShutters, std::vector<float>(m_vfShutters.size(), 8), vfExposures);
        BuildWeightTable(vfWeights);
        std::vector<const unsigned char*> vRows;
        for (const Bytes& image : m_vImages)
            vRows.push_back(image.data() +
                            4 * static_cast<std::size_t>(y) * static_cast<std::size_t>(m_nWidth));
        const auto pfRow = MergeRow(vRows, m_nWidth, 3, vfExposures, m_vafCurves, vfWeights, 8, 247);
        return {pfRow.get(), pfRow.get() + 3 * static_cast<std::size_t>(m_nWidth)};
    }

private:
    TempFolder m_folder;
    std::int32_t m_nWidth, m_nHeight;
    std::vector<Bytes> m_vImages;
    std::vector<std::wstring> m_vsFiles;
    std::vector<float> m_vfShutters;
    std::vector<float*> m_vafCurves;
    bool m_bMerged = false;
};

std::vector<float> FloatFile(const std::wstring& sPath)
{
    const Bytes bytes = ReadBytes(LS::Util::NarrowPath(sPath));
    std::vector<float> vfValues(bytes.size() / sizeof(float));
    std::copy(bytes.begin(), bytes.end(), reinterpret_cast<unsigned char*>(vfValues.data()));
    return vfValues;
}

std::size_t FilesInCacheFolder()
{
    if (!fs::exists(CacheFolder()))
        return 0;
    return static_cast<std::size_t>(
        std::distance(fs::directory_iterator(CacheFolder()), fs::directory_iterator()));
}

void ExpectEmptyWorkspace()
{
    const HDRWorkspace& workspace = Workspace();
    EXPECT_EQ(0, workspace.nWidth + workspace.nHeight + workspace.nScaledWidth + workspace.nScaledHeight);
    EXPECT_TRUE(workspace.sHDRFile.empty());
    EXPECT_FALSE(workspace.pfScaled);
    EXPECT_TRUE(workspace.vafCurves.empty());
    EXPECT_FALSE(workspace.bCancel);
}

} // namespace

TEST(MergeExposures, FillsFileAndWorkspace)
{
    const FailureRecorder log;
    Series series(6, 1001, 3); // every second row and column goes into the scaled-down copy
    ASSERT_TRUE(series.Merge());

    const HDRWorkspace& workspace = Workspace();
    EXPECT_EQ(6, workspace.nWidth);
    EXPECT_EQ(1001, workspace.nHeight);
    EXPECT_EQ(2, workspace.nScaledWidth);
    EXPECT_EQ(500, workspace.nScaledHeight);
    const std::vector<float> vfFile = FloatFile(workspace.sHDRFile);
    ASSERT_EQ(6U * 1001 * 3, vfFile.size());
    for (std::ptrdiff_t y = 0; y < 1001; ++y) {
        const std::vector<float> vfRow = series.ExpectedRow(static_cast<std::int32_t>(y));
        ASSERT_TRUE(std::equal(vfRow.begin(), vfRow.end(), vfFile.begin() + y * 18)) << "row " << y;
        for (std::ptrdiff_t x = 0; y % 2 == 0 && y / 2 < 500 && x < 2; ++x)
            ASSERT_TRUE(std::equal(vfRow.begin() + x * 9, vfRow.begin() + x * 9 + 3,
                                   workspace.pfScaled.get() + (y / 2 * 2 + x) * 3))
                << "row " << y << ", scaled column " << x;
    }
    EXPECT_TRUE(log.Lines().empty());

    const std::wstring sFile = workspace.sHDRFile;
    ResetWorkspace();
    EXPECT_FALSE(fs::exists(sFile));
    EXPECT_TRUE(fs::exists(series.File(0))) << "source cache files stay for the next merge";
}

TEST(MergeExposures, ReportsEachPercentOnce)
{
    Series series(2, 250, 2);
    RecordingProgress dialog;
    ProgbarSetter setter = dialog.Setter();
    ASSERT_TRUE(series.Merge(&setter));
    ASSERT_EQ(100U, dialog.Positions().size());
    for (std::size_t i = 0; i < 100; ++i)
        EXPECT_EQ(static_cast<int>(i) + 1, dialog.Positions()[i]);
}

TEST(MergeExposures, CancelAtEveryPositionLeavesAnEmptyWorkspace)
{
    Series series(3, 120, 2);
    for (int nAt = 1; nAt < 99; ++nAt) { // 99 is reported after the last row
        SCOPED_TRACE(nAt);
        RecordingProgress dialog(nAt);
        ProgbarSetter setter = dialog.Setter();
        ASSERT_FALSE(series.Merge(&setter));
        EXPECT_EQ(nAt, dialog.Positions().back()) << "stops at the next row";
        ExpectEmptyWorkspace();
    }
    EmptyCacheFolder();
}

TEST(MergeExposures, CancelWithTheLastReportComesTooLate)
{
    Series series(3, 120, 2);
    RecordingProgress dialog(100);
    ProgbarSetter setter = dialog.Setter();
    EXPECT_TRUE(series.Merge(&setter));
}

TEST(MergeExposures, FailuresLeaveNothingButALogLine)
{
    EmptyCacheFolder();
    const struct {
        const char* name;
        void (*prepare)(const Series&);
        std::int32_t width;
        const char* reason;
    } cases[] = {
        {"missing source", [](const Series& s) { fs::remove(s.File(1)); }, 4, "No such file"},
        {"source cut in its last row",
         [](const Series& s) { fs::resize_file(s.File(1), fs::file_size(s.File(1)) - 1); }, 4, "too short"},
        {"empty source", [](const Series& s) { fs::resize_file(s.File(0), 0); }, 4, "too short"},
        {"folder as source",
         [](const Series& s) {
             fs::remove(s.File(0));
             fs::create_directory(s.File(0));
         },
         4, "not a regular file"},
        {"pipe as source",
         [](const Series& s) {
             fs::remove(s.File(0));
             ASSERT_EQ(0, mkfifo(s.File(0).c_str(), 0600));
         },
         4, "not a regular file"},
        {"too narrow", [](const Series&) {}, 1, "too narrow"},
        {"no size", [](const Series&) {}, 0, "unknown"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        Series series(c.width, 1500, 2);
        c.prepare(series);
        const FailureRecorder log;
        EXPECT_FALSE(series.Merge());
        ExpectEmptyWorkspace();
        ASSERT_EQ(1U, log.Lines().size());
        EXPECT_NE(std::string::npos, log.Lines()[0].find(c.reason)) << log.Lines()[0];
        EmptyCacheFolder();
    }
}

TEST(MergeExposures, FullDiskDeletesThePartialFile)
{
    EmptyCacheFolder();
    Series series(50, 40, 2);
    const rlim_t nWhole = rlim_t{50} * 40 * 12;
    for (const rlim_t nLimit : {rlim_t{0}, rlim_t{600}, rlim_t{9000}, nWhole - 1}) {
        SCOPED_TRACE(nLimit);
        const FailureRecorder log;
        {
            const ResourceLimit limit(RLIMIT_FSIZE, nLimit);
            EXPECT_FALSE(series.Merge());
        }
        EXPECT_EQ(0U, FilesInCacheFolder());
        ExpectEmptyWorkspace();
        EXPECT_EQ(1U, log.Lines().size());
    }
    const ResourceLimit limit(RLIMIT_FSIZE, nWhole);
    EXPECT_TRUE(series.Merge());
}

TEST(MergeExposures, TooFewDescriptorsAreACleanFailure)
{
    Series series(4, 4, 40);
    const FailureRecorder log;
    {
        const ResourceLimit limit(RLIMIT_NOFILE, 30);
        EXPECT_FALSE(series.Merge());
    }
    ExpectEmptyWorkspace();
    ASSERT_EQ(1U, log.Lines().size());
    EXPECT_TRUE(series.Merge()) << "no descriptor was lost";
}

TEST(MergeExposures, AbsurdExposuresGiveDefinedFloats)
{
    Series series(8, 8, 2);
    for (const float fShutter : {0.0F, -1.0F, 1e-38F, 3e38F, NAN, INFINITY}) {
        SCOPED_TRACE(fShutter);
        std::vector<float> vfExposures;
        ExposureList({fShutter, 0.01F}, {8, 0}, vfExposures);
        const std::vector<unsigned char> row(32, 128);
        std::vector<float> vfWeights;
        BuildWeightTable(vfWeights);
        std::vector<float*> vafCurves;
        LoadCurves(nullptr, vafCurves);
        EXPECT_TRUE(MergeRow({row.data(), row.data()}, 8, 3, vfExposures, vafCurves, vfWeights, 8, 247));
        for (const float* pCurve : vafCurves)
            delete[] pCurve;
    }
}

TEST(MergeExposuresDeathTest, PreconditionsAreNamed)
{
    const std::vector<float> one{1}, none;
    const std::vector<float*> curves(3, nullptr);
    EXPECT_DEATH(MergeExposures({}, 1, 1, none, none, none, none, curves, nullptr, &Workspace()),
                 "vsLDRFiles.size\\(\\) > 0");
    EXPECT_DEATH(MergeExposures({L"a"}, 1, 1, one, one, one, none, curves, nullptr, &Workspace()),
                 "vsLDRFiles.size\\(\\) == vfNDs.size\\(\\)");
    EXPECT_DEATH(MergeExposures({L"a"}, 1, 1, one, one, one, one, {}, nullptr, &Workspace()),
                 "vafCurves.size\\(\\) == 3");
    EXPECT_DEATH(MergeExposures({L"a"}, 1, 1, one, one, one, one, curves, nullptr, nullptr),
                 "pHDRInfo != NULL");
}

TEST(SaveHDRFile, ClearsTheCancelFlagAndFailsWithoutAResult)
{
    RequestCancel();
    const TempFolder folder;
    const FailureRecorder log;
    EXPECT_FALSE(SaveHDRFile(folder.File("a.hdr").c_str(), HDR_RADIANCE, nullptr));
    EXPECT_FALSE(Workspace().bCancel);
    EXPECT_TRUE(folder.Names().empty());
}

TEST(WriteHDRData, RefusesWhatItCannotWrite)
{
    const TempFolder folder;
    const std::string sOut = folder.File("out"), sIn = folder.File("in");
    WriteElements(sIn, std::vector<float>(3, 1));
    const char* const szIn = sIn.c_str();
    const char* const szOut = sOut.c_str();
    const struct {
        const char* name;
        const char* source;
        const char* path;
        std::int32_t width, height, format;
    } cases[] = {
        {"no source", nullptr, szOut, 1, 1, 0},  {"no path", szIn, nullptr, 1, 1, 0},
        {"no width", szIn, szOut, 0, 1, 0},      {"negative height", szIn, szOut, 1, -1, 0},
        {"format below", szIn, szOut, 1, 1, -1}, {"format above", szIn, szOut, 1, 1, 3},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_FALSE(WriteHDRData(c.source, c.path, c.width, c.height, c.format, nullptr));
        EXPECT_FALSE(fs::exists(sOut));
    }
}
