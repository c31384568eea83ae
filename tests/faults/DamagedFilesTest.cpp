// Damaged, hostile and misnamed photographs: each is decoded or named, and nothing takes long.
#include "image/ExifReader.h"
#include "image/ImageDecoder.h"
#include "tests/cli/Photographs.h"
#include "tests/faults/Bombs.h"
#include "tests/faults/FaultyProgram.h"
#include "tests/faults/Form.h"
#include "tests/faults/Mutation.h"
#include "tests/faults/SamplePictures.h"
#include "tests/image/Pictures.h"

#include <gtest/gtest.h>
#include <wx/init.h>
#include <wx/log.h>

#include <chrono>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

using namespace LS::Tests;
namespace fs = std::filesystem;

namespace {

using Clock = std::chrono::steady_clock;

/// What a child process gets here; some mutants keep the library's decoders busy for ever.
constexpr std::chrono::milliseconds CHILDS_TIME(500);

double SecondsSince(Clock::time_point start)
{
    return std::chrono::duration<double>(Clock::now() - start).count();
}

/// The image library without a window, and silence about what it finds in damaged files.
class DamagedPictures : public testing::Test {
protected:
    DamagedPictures() { RegisterImageHandlers(); }

    /// Decodes and reads the tags of some bytes. @return whether they decode
    bool Take(const Bytes& bytes)
    {
        WriteElements(m_sPath, bytes);
        return TakeFile();
    }

    bool TakeFile()
    {
        const auto start = Clock::now();
        const DecodedImage decoded = DecodeImage(m_sPath, CHILDS_TIME);
        EXPECT_NE(DecodeOutcome::Missing, decoded.outcome);
        EXPECT_EQ(decoded.outcome == DecodeOutcome::Decoded, decoded.image.IsOk());
        ShotValues shot;
        ReadShot(m_sPath, shot);
        EXPECT_GT(MOST_SECONDS, SecondsSince(start));
        return decoded.image.IsOk();
    }

    /// A picture that is ended in its child process.
    void ExpectTooLong(const Bytes& bytes)
    {
        WriteElements(m_sPath, bytes);
        EXPECT_EQ("the decoder took too long", DecodeImage(m_sPath, CHILDS_TIME).sReason);
    }

    TempFolder m_folder;
    std::string m_sPath = m_folder.File("picture");

private:
    wxInitializer m_library;
    wxLogNull m_silence;
};

Bytes PngPicture()
{
    return Encoded(wxImage(64, 64), wxBITMAP_TYPE_PNG);
}

Bytes WithExif(const std::string& sPath)
{
    WritePhotograph(sPath, {});
    return ReadBytes(sPath);
}

} // namespace

TEST_F(DamagedPictures, EachKindDecodesWhole)
{
    for (const SamplePicture& picture : SamplePictures()) {
        SCOPED_TRACE(picture.sName);
        EXPECT_TRUE(Take(picture.bytes));
    }
}

TEST_F(DamagedPictures, CutAnywhere)
{
    for (const SamplePicture& picture : SamplePictures()) {
        SCOPED_TRACE(picture.sName);
        const std::size_t nStep = IsLongForm() ? 1 : picture.bytes.size() / 12 + 1;
        for (std::size_t n = 0; n < picture.bytes.size(); n += nStep)
            Take(Bytes(picture.bytes.begin(), picture.bytes.begin() + static_cast<std::ptrdiff_t>(n)));
    }
}

namespace {

constexpr std::size_t SLICES = 8; // of the kinds, so that all processors have work

class MutatedPictures : public DamagedPictures, public testing::WithParamInterface<std::size_t> {};

INSTANTIATE_TEST_SUITE_P(, MutatedPictures, testing::Range(std::size_t{0}, SLICES));

} // namespace

TEST_P(MutatedPictures, AreDecodedOrRefused)
{
    auto vPictures = SamplePictures();
    vPictures.push_back({"photograph.jpg", WithExif(m_folder.File("photograph.jpg"))});
    const int nMutants = InForm(600, 50000) / static_cast<int>(vPictures.size()) + 1;
    int nAll = 0, nDecoded = 0;
    for (std::size_t i = GetParam(); i < vPictures.size(); i += SLICES) {
        SCOPED_TRACE(vPictures[i].sName);
        std::mt19937 random(static_cast<std::uint32_t>(i));
        for (int n = 0; n < nMutants && !HasFailure(); ++n, ++nAll) {
            SCOPED_TRACE(n);
            nDecoded += Take(Mutated(vPictures[i].bytes, random));
        }
    }
    std::printf("%d mutants, of which %d decode\n", nAll, nDecoded);
    EXPECT_LT(nAll / 20, nDecoded) << "damage that no decoder gets past tries little";
    EXPECT_GT(nAll, nDecoded);
}

TEST_F(DamagedPictures, ManyScansEndInTime)
{
    EXPECT_TRUE(Take(Jpeg({.bProgressive = true})));
    EXPECT_TRUE(Take(JpegOfManyScans(40, 24, 1000)));
    // A file of half a megabyte that would keep a decoder busy for an hour, and a small one of usual scans.
    ExpectTooLong(JpegOfManyScans(5000, 4000, 50'000));
    ExpectTooLong(JpegOfManyScans(20'000, 20'000, 8));
}

TEST_F(DamagedPictures, ChunksBeyondTheEndOfTheFileEndInTime)
{
    const std::size_t nLength = Find(PngPicture(), {'I', 'D', 'A', 'T'}) - 4;
    Bytes file = PngPicture();
    file.resize(nLength + 8 + 20); // a few bytes of the pixels,
    file[nLength] = 0x7F;          // which claim to be 2 GB
    ExpectTooLong(file);
}

TEST_F(DamagedPictures, MoreDataThanPixelsEndInTime)
{
    ExpectTooLong(PngOfTooMuch(8192));
}

TEST_F(DamagedPictures, BeginningsWithManyGigabytesOfNothingEndInTime)
{
    using namespace std::string_view_literals;
    const std::string_view heads[] = {
        "\xFF\xD8"sv,
        "\xFF\xD8\xFF\xE0\0\4ab"sv,
        "\xFF\xD8\xFF\xC2\0\x0B\x08\0\x08\0\x08\1\1\x11\0\xFF\xDA\0\x08\1\1\0\0\x3F\0"sv, // in its scan
        "\x89PNG\r\n\x1A\n\0\0\0\x0DIHDR\0\0\0\x08\0\0\0\x08\x08\2\0\0\0\x4B\x6D\x29\xDC"sv,
        "II*\0\x08\0\0\0"sv,
        "BM"sv,
        "GIF89a"sv,
        "P6 8 8 255\n"sv,
        "/* XPM */"sv,
        "8BPS\0\1"sv,
        "%!PS-Adobe-3.0 EPSF-3.0\n"sv,
        "<?xpacket begin='' id='W5M0MpCehiHzreSzNTczkc9d'?>"sv,
        "\0\0\0\x0CjP  \r\n\x87\n"sv,
        "\0MRM"sv,
        "FUJIFILMCCD-RAW "sv,
        "PGF6"sv,
        "II\x1A\0\0\0HEAPCCDR"sv,
    };
    for (const std::string_view sHead : heads) {
        SCOPED_TRACE(sHead);
        WriteText(m_sPath, sHead);
        fs::resize_file(m_sPath, std::uintmax_t{100} << 30);
        TakeFile();
    }
}

TEST_F(DamagedPictures, TilesLargerThanThePictureEndInTime)
{
    ExpectTooLong(TiffOfLargeTiles());
}

namespace {

/// Rows that are no photographs.
class StrangeRows : public FaultyProgram {
protected:
    /// Merges the series and one more row, which is told to have an exposure.
    ProgramRun MergeWithRow(const std::string& sRow, RunOptions options = {})
    {
        options.folder = m_outputs.Path();
        options.timeLimit = MOST_SECONDS;
        options.environment.push_back("TMPDIR=" + m_temporary.Path());
        return RunProgram({"--shutter", "1,2,3,4", "--aperture", "8", "-o", "x.exr", m_vsImages[0],
                           m_vsImages[1], m_vsImages[2], "--", sRow},
                          options);
    }

    void ExpectRefused(const ProgramRun& run)
    {
        EXPECT_EQ(2, run.code) << run.err;
        EXPECT_NE("", run.err);
        EXPECT_TRUE(m_outputs.Names().empty());
        EXPECT_TRUE(m_temporary.Names().empty());
    }
};

} // namespace

namespace {

/// What makes a program leave a mark where it asks for the network.
std::vector<std::string> NetworkWatch([[maybe_unused]] const std::string& sMark)
{
#ifdef LS_FAILING_SYSTEM
    return {"LD_PRELOAD=" LS_FAILING_SYSTEM, "LS_FAULT_CALL=network", "LS_FAULT_MARK=" + sMark};
#else
    return {}; // the sanitizers take the place of the library that watches
#endif
}

} // namespace

TEST_F(StrangeRows, AreRefusedWithoutWaitingAndWithoutTheNetwork)
{
    const TempFolder places;
    ASSERT_EQ(0, mkfifo(places.File("pipe").c_str(), 0600));
    fs::create_symlink("/dev/zero", places.File("link to a device"));
    fs::create_symlink(places.File("loop"), places.File("loop"));
    fs::create_symlink(places.File("nothing"), places.File("dangling"));
    WriteText(places.File("empty"), "");
    RunOptions options;
    options.environment = NetworkWatch(places.File("met"));
    for (const std::string& sRow :
         {std::string("-"), std::string("http://127.0.0.1:9/a.jpg"), std::string("https://localhost/a.jpg"),
          std::string("ftp://localhost/a.jpg"), std::string("file:///etc/passwd"), std::string("data:,x"),
          std::string("/dev/zero"), std::string("/dev/tty"), std::string("/dev/stdin"),
          std::string("/proc/self/mem"), std::string("/proc/kmsg"), places.Path(), places.File("pipe"),
          places.File("link to a device"), places.File("loop"), places.File("dangling"), places.File("empty"),
          std::string("\n%n%s"), std::string(5000, 'a')}) {
        SCOPED_TRACE(sRow);
        ExpectRefused(MergeWithRow(sRow, options));
        EXPECT_FALSE(fs::exists(places.File("met"))) << "the network was asked";
    }
}

#ifdef LS_FAILING_SYSTEM
TEST_F(StrangeRows, WatchesTheNetworkIndeed)
{
    const TempFolder places;
    RunOptions options;
    options.program = "/usr/bin/getent";
    options.environment = NetworkWatch(places.File("met"));
    RunProgram({"ahosts", "127.0.0.1"}, options);
    EXPECT_TRUE(fs::exists(places.File("met")));
}
#endif

TEST_F(StrangeRows, PicturesUnderWrongNamesCountByTheirContent)
{
    const wxInitializer library;
    RegisterImageHandlers();
    const std::vector<SamplePicture> vPictures = SamplePictures();
    const TempFolder places;
    for (std::size_t i = 0; i < vPictures.size(); ++i) {
        // Each picture under the name of another kind; its size differs from that of the series.
        const std::string sName = vPictures[(i + 5) % vPictures.size()].sName;
        SCOPED_TRACE(vPictures[i].sName + " as " + sName);
        WriteElements(places.File(sName), vPictures[i].bytes);
        const ProgramRun run = MergeWithRow(places.File(sName));
        ExpectRefused(run);
        EXPECT_NE(std::string::npos, run.err.find("images of one size")) << run.err;
    }
}

#ifndef __SANITIZE_ADDRESS__ // which takes terabytes of addresses for itself
TEST_F(StrangeRows, HeadersThatAskForTooMuchMeetTheMemoryLimit)
{
    const wxInitializer library;
    RegisterImageHandlers();
    const TempFolder places;
    const auto bomb = [](Bytes file, std::size_t nAt, const Bytes& size) {
        std::copy(size.begin(), size.end(), file.begin() + static_cast<std::ptrdiff_t>(nAt));
        return file;
    };
    const wxImage blocks = BlockPicture(40, 24);
    const Bytes jpeg = Jpeg({}), progressive = Jpeg({.bProgressive = true});
    // 500 megapixels each, just below what is refused by the header alone.
    const struct {
        const char* szName;
        Bytes file;
    } cases[] = {
        {"bomb.png", bomb(Encoded(blocks, wxBITMAP_TYPE_PNG), 16, {0, 0, 0x4E, 0x20, 0, 0, 0x61, 0xA8})},
        {"bomb.jpg", bomb(jpeg, Find(jpeg, {0xFF, 0xC0, 0, 17, 8}) + 5, {0x4E, 0x20, 0x61, 0xA8})},
        {"progressive.jpg",
         bomb(progressive, Find(progressive, {0xFF, 0xC2, 0, 17, 8}) + 5, {0x4E, 0x20, 0x61, 0xA8})},
        {"bomb.tif", GreyTiff({20'000, 25'000})},
        {"bomb.bmp", bomb(Encoded(blocks, wxBITMAP_TYPE_BMP), 18, {0x20, 0x4E, 0, 0, 0xA8, 0x61, 0, 0})},
        {"bomb.tga", bomb(Encoded(blocks, wxBITMAP_TYPE_TGA), 12, {0x20, 0x4E, 0xA8, 0x61})},
        {"bomb.gif", bomb(Encoded(blocks, wxBITMAP_TYPE_GIF), 6, {0x20, 0x4E, 0xA8, 0x61})},
        {"bomb.pcx", bomb(Encoded(blocks, wxBITMAP_TYPE_PCX), 8, {0x20, 0x4E, 0xA8, 0x61})},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.szName);
        WriteElements(places.File(c.szName), c.file);
        RunOptions options;
        options.memoryLimit = 1L << 30;
        ExpectRefused(MergeWithRow(places.File(c.szName), options));
    }
}
#endif
