// Disks of all sizes, from none to just enough: what is there is whole, and what was there stays.
#include "tests/faults/FaultyProgram.h"
#include "tests/faults/Form.h"

#include <algorithm>
#include <set>

#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

using namespace LS::Tests;

namespace {

constexpr std::size_t PAGE = 4096;
constexpr const char* NO_SPACE = "No space left on device";

/// Wide enough for the way of the tone mapper that keeps luminance in a file.
constexpr int WIDTH = 1600, HEIGHT = 40;

bool WriteProcFile(const char* szPath, const std::string& sText)
{
    const int nFile = open(szPath, O_WRONLY | O_CLOEXEC);
    const bool bWritten =
        nFile >= 0 && write(nFile, sText.data(), sText.size()) == static_cast<ssize_t>(sText.size());
    close(nFile);
    return bWritten;
}

/// Mounts of this process are its own from then on. A user who isn't root becomes one of a namespace of
/// users.
bool LeaveMounts()
{
    const auto nUser = std::to_string(getuid()), nGroup = std::to_string(getgid());
    if (unshare(CLONE_NEWNS) != 0) {
        if (unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0)
            return false;
        WriteProcFile("/proc/self/setgroups", "deny");
        if (!WriteProcFile("/proc/self/uid_map", "0 " + nUser + " 1") ||
            !WriteProcFile("/proc/self/gid_map", "0 " + nGroup + " 1"))
            return false;
    }
    return mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

/// A file system in memory that holds some bytes, in whole pages, and goes with this object.
///
/// Mounting needs a mount namespace of the process's own, which the first disk makes; where the system
/// refuses that to a test, there is no disk.
class SmallDisk {
public:
    explicit SmallDisk(std::size_t nBytes)
    {
        static const bool bMayMount = LeaveMounts();
        const std::string sSize = "size=" + std::to_string(std::max<std::size_t>(nBytes, 1));
        m_bMounted =
            bMayMount && mount("tmpfs", Path().c_str(), "tmpfs", MS_NOSUID | MS_NODEV, sSize.c_str()) == 0;
    }
    SmallDisk(const SmallDisk&) = delete;
    SmallDisk& operator=(const SmallDisk&) = delete;
    ~SmallDisk()
    {
        if (m_bMounted)
            umount2(Path().c_str(), MNT_DETACH);
    }

    bool IsMounted() const { return m_bMounted; }
    const std::string& Path() const { return m_folder.Path(); }

private:
    TempFolder m_folder;
    bool m_bMounted = false;
};

class FullDisk : public FaultyProgram {
protected:
    FullDisk() : FaultyProgram(WIDTH, HEIGHT) {}

    static bool CanMount()
    {
        if (SmallDisk(PAGE).IsMounted())
            return true;
        ReportNotTried("mounting is refused here; limits on the size of files are tried elsewhere");
        return false;
    }
};

/// Sizes of disks: the first pages, steps up to the whole, and one that only the tail doesn't fit.
std::set<std::size_t> Sizes(std::size_t nWhole, std::size_t nSteps)
{
    const std::size_t nPages = (nWhole + PAGE - 1) / PAGE;
    std::set<std::size_t> sizes{PAGE, 2 * PAGE, std::max<std::size_t>(nPages - 1, 1) * PAGE};
    for (std::size_t i = 1; i <= nSteps; ++i)
        sizes.insert(std::max<std::size_t>(nPages * i / nSteps, 1) * PAGE);
    return sizes;
}

} // namespace

TEST_F(FullDisk, WorkingFilesThatDontFit)
{
    if (!CanMount())
        return;
    const std::size_t nMerge = 3UL * 4 * WIDTH * HEIGHT + 12UL * WIDTH * HEIGHT;
    const Names outputs{"x.exr", "x.png"};
    std::set<int> codes;
    for (const std::size_t nSize :
         Sizes(nMerge + 8UL * WIDTH * HEIGHT + 8 * PAGE, static_cast<std::size_t>(InForm(10, 60)))) {
        SCOPED_TRACE(nSize);
        const SmallDisk disk(nSize);
        PutOlderFiles(outputs);
        RunOptions options;
        options.environment = {"TMPDIR=" + disk.Path()};
        const ProgramRun run = Merge(outputs, options);
        ExpectCleanOutcome(run, outputs);
        EXPECT_EQ(Names{}, NamesIn(disk.Path()));
        codes.insert(run.code);
        if (nSize < nMerge)
            ExpectFailure(3, NO_SPACE, run);
    }
    EXPECT_EQ((std::set{0, 3, 4}), codes) << "the split of luminance fails between merge and success";
}

TEST_F(FullDisk, OutputsThatDontFit)
{
    if (!CanMount())
        return;
    for (const char* szOutput : {"x.exr", "x.hdr", "x.tif", "x.jpg", "x.png", "x.bmp", "ldr.tif", "x.crv"}) {
        const bool bCurve = std::string_view(szOutput) == "x.crv";
        const Names outputs = bCurve ? Names{"x.bmp", szOutput} : Names{szOutput};
        std::size_t nWhole = 0;
        for (const auto& [sName, bytes] : Untroubled(outputs))
            nWhole += (bytes.size() + PAGE - 1) / PAGE * PAGE;
        for (const std::size_t nSize : Sizes(nWhole, static_cast<std::size_t>(InForm(4, 60)))) {
            SCOPED_TRACE(testing::Message() << szOutput << " of " << nWhole << " on " << nSize);
            const SmallDisk disk(nSize + outputs.size() * PAGE); // a page for each older file
            RunOptions options;
            options.folder = disk.Path();
            PutOlderFiles(outputs, disk.Path());
            const ProgramRun run = Merge(outputs, options);
            ExpectCleanOutcome(run, outputs, disk.Path());
            EXPECT_EQ(nSize < nWhole ? 4 : 0, run.code) << run.err;
            if (run.code != 0 && outputs[0] != "ldr.tif") // the TIFF library's own words
                ExpectHas(NO_SPACE, run.err);
        }
    }
}
