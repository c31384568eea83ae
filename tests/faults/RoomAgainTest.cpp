// Disks that are full at one attempt and have room at the next.
#include "Util/Paths.h"
#include "engine/CacheFolder.h"
#include "engine/HDRRoutine.h"
#include "engine/HDRWorkspace.h"
#include "image/LdrSave.h"
#include "image/SourceCache.h"
#include "tests/faults/Form.h"
#include "tests/faults/MergeFixture.h"
#include "tests/faults/SmallDisk.h"
#include "tests/support/FailureRecorder.h"
#include "xml/Config.h"

#include <gtest/gtest.h>
#include <wx/image.h>
#include <wx/init.h>

#include <fcntl.h>
#include <unistd.h>

#include <filesystem>
#include <functional>
#include <random>

using namespace LS::Tests;
namespace fs = std::filesystem;

namespace {

constexpr std::size_t PAGE = 4096, DISK = 4 << 20;

/// What of the window's work needs room.
struct Step {
    std::string sName;
    std::function<bool()> run;
    std::string sFile;  ///< what it leaves; empty: nothing that could be compared
    std::size_t nRoom;  ///< in bytes, at first
    std::string sOlder; ///< the content of an older file, which stays; empty: there is none
    bool bMerges = false;
};

/// A small disk, on which the cache folder lies as well.
class RoomAgain : public testing::Test {
protected:
    void SetUp() override
    {
        if (!m_disk.IsMounted())
            return ReportNotTried(
                "mounting is refused here; limits on the size of files are tried elsewhere");
        fs::remove_all(m_sCacheFolder);
        fs::create_directory_symlink(m_disk.Path(), m_sCacheFolder);
    }

    void TearDown() override
    {
        ResetWorkspace();
        if (m_disk.IsMounted())
            fs::remove(m_sCacheFolder);
    }

    std::string OnDisk(const std::string& sName) const { return m_disk.Path() + "/" + sName; }

    /// Takes all of the disk but some bytes.
    void Fill(std::size_t nRoom) const
    {
        const int nFile = ::open(OnDisk("filling").c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600);
        const auto nFree = static_cast<std::size_t>(fs::space(m_disk.Path()).available);
        ASSERT_EQ(0, ::posix_fallocate(nFile, 0, static_cast<off_t>(nFree - nRoom)));
        ::close(nFile);
    }

    /// Runs a step on a full disk, and once more when there is room.
    void Expect(const Step& step) const
    {
        SCOPED_TRACE(step.sName);
        ASSERT_TRUE(step.run());
        const Bytes whole = ReadBytes(step.sFile);
        if (step.bMerges)
            ResetWorkspace();
        fs::remove(step.sFile);
        if (!step.sOlder.empty())
            WriteText(step.sFile, step.sOlder);

        Fill(step.nRoom);
        {
            const FailureRecorder failures;
            EXPECT_FALSE(step.run());
            EXPECT_FALSE(failures.Lines().empty());
        }
        EXPECT_TRUE(step.sOlder.empty() || step.sOlder == ReadText(step.sFile));

        fs::remove(OnDisk("filling"));
        EXPECT_TRUE(step.run());
        EXPECT_EQ(whole, ReadBytes(step.sFile));
    }

    const wxInitializer m_library;
    const SmallDisk m_disk{DISK};
    const std::string m_sCacheFolder =
        fs::path(LS::Util::NarrowPath(CacheFolder())).parent_path().native(); // without its separator
};

bool SaveSettings(const std::string& sFolder)
{
    Config config;
    const bool bLoaded = config.Load(LS::Util::WidePath(sFolder));
    config.m_language = "French";
    return bLoaded && config.Write();
}

} // namespace

TEST_F(RoomAgain, IsAllThatAStepNeeds)
{
    if (!m_disk.IsMounted())
        return;
    const TempFolder folder;
    const SyntheticSeries series = PlainSeries(folder, 1501, 12, 2); // its luminance goes through a file
    wxImage picture(1501, 12);
    std::mt19937 random(1);
    for (int i = 0; i < 3 * 1501 * 12; ++i)
        picture.GetData()[i] = static_cast<unsigned char>(random()); // which no format packs
    const auto map = [] {
        std::int32_t nWidth = 0, nHeight = 0;
        return MapWithProgress(nWidth, nHeight) != nullptr;
    };
    const auto saveCurve = [sFile = OnDisk("x.crv")] { // its result says nothing of what was written
        return SaveCurves(sFile.c_str()) && fs::file_size(sFile) == 3072;
    };

    constexpr std::size_t ROOM = 2 * PAGE;
    const std::string sOlder = "<a Version='6'/>";
    Expect({"convert", [&] { return WriteSourceCacheFile(picture, OnDisk("a.tmp"), {}); }, OnDisk("a.tmp"),
            ROOM, ""});
    Expect({"merge", [&] { return Merge(series, Curves::Standard).has_value(); }, "", ROOM, "", true});
    Expect({"split luminance", map, "", ROOM, ""});
    Expect({"save a curve", saveCurve, OnDisk("x.crv"), 0, ""});
    for (std::int32_t nFormat = 0; nFormat < 3; ++nFormat) {
        const std::string sFile = OnDisk("32 bits " + std::to_string(nFormat));
        Expect({sFile, [=] { return SaveHDRFile(sFile.c_str(), nFormat, nullptr); }, sFile, ROOM, ""});
    }
    for (const LdrFormat format : {LdrFormat::Jpeg, LdrFormat::Png, LdrFormat::Tiff, LdrFormat::Bmp}) {
        const std::string sFile = OnDisk("8 bits " + std::to_string(static_cast<int>(format)));
        const auto save = [&] { return SaveLdr(picture, sFile, format) == LdrOutcome::Saved; };
        Expect({sFile, save, sFile, ROOM, sOlder});
    }
    Expect({"save the settings", [&] { return SaveSettings(m_disk.Path()); }, OnDisk("lsConfigHDR.xml"), 0,
            sOlder});
}
