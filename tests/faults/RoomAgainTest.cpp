// Disks that are full at one attempt and have room at the next.
#include "engine/CacheFolder.h"
#include "image/LdrSave.h"
#include "image/SourceCache.h"
#include "tests/faults/Form.h"
#include "tests/faults/MergeFixture.h"
#include "tests/faults/SmallDisk.h"
#include "tests/support/FailureRecorder.h"
#include "xml/Config.h"

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

/// A small disk, on which the cache folder lies as well.
class RoomAgain : public MergeFixture {
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

    /// Takes a step of the window's work on a full disk, and once more when there is room.
    /// @param sFile   what it leaves; empty: nothing that could be compared
    /// @param sOlder  the content of an older file, which stays; empty: there is none
    void Expect(const std::function<bool()>& step, const std::string& sFile = "",
                std::size_t nRoom = 2 * PAGE, const std::string& sOlder = "") const
    {
        ASSERT_TRUE(step());
        const Bytes whole = ReadBytes(sFile);
        fs::remove(sFile);
        if (!sOlder.empty())
            WriteText(sFile, sOlder);

        Fill(nRoom);
        {
            const FailureRecorder failures;
            EXPECT_FALSE(step()) << sFile;
            EXPECT_FALSE(failures.Lines().empty()) << sFile;
        }
        EXPECT_TRUE(sOlder.empty() || sOlder == ReadText(sFile)) << sFile;

        fs::remove(OnDisk("filling"));
        EXPECT_TRUE(step());
        EXPECT_EQ(whole, ReadBytes(sFile)) << sFile;
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
    TakeGradients(1501, 12, 2); // its luminance goes through a file
    wxImage picture(1501, 12);
    std::mt19937 random(1);
    for (int i = 0; i < 3 * 1501 * 12; ++i)
        picture.GetData()[i] = static_cast<unsigned char>(random()); // which no format packs

    const std::string sOlder = "<a Version='6'/>";
    Expect([&] { return WriteSourceCacheFile(picture, OnDisk("a.tmp"), {}); }, OnDisk("a.tmp"));
    Expect([&] {
        const bool bDone = Merge();
        ResetWorkspace(); // its file takes room
        return bDone;
    });
    ASSERT_TRUE(Merge());
    Expect([&] { return !MapWithProgress().empty(); });
    const std::string sCurve = OnDisk("x.crv"); // the result of saving says nothing of what was written
    Expect([&] { return SaveCurves(sCurve.c_str()) && fs::file_size(sCurve) == 3072; }, sCurve, 0);
    for (std::int32_t nFormat = 0; nFormat < 3; ++nFormat) {
        const std::string sFile = OnDisk("32 bits " + std::to_string(nFormat));
        Expect([&] { return SaveHDRFile(sFile.c_str(), nFormat, nullptr); }, sFile);
    }
    for (const LdrFormat format : {LdrFormat::Jpeg, LdrFormat::Png, LdrFormat::Tiff, LdrFormat::Bmp}) {
        const std::string sFile = OnDisk("8 bits " + std::to_string(static_cast<int>(format)));
        const auto save = [&] { return SaveLdr(picture, sFile, format) == LdrOutcome::Saved; };
        Expect(save, sFile, 2 * PAGE, sOlder);
    }
    Expect([&] { return SaveSettings(m_disk.Path()); }, OnDisk("lsConfigHDR.xml"), 0, sOlder);
}
