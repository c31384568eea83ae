// Damaged, hostile and misnamed photographs: each is decoded or named, and nothing takes long.
#include "image/ExifReader.h"
#include "image/ImageDecoder.h"
#include "tests/cli/Photographs.h"
#include "tests/faults/Devices.h"
#include "tests/faults/FaultyProgram.h"
#include "tests/faults/Form.h"
#include "tests/faults/Mutation.h"
#include "tests/faults/SamplePictures.h"
#include "tests/image/Pictures.h"

#include <wx/init.h>
#include <wx/log.h>

#include <chrono>
#include <filesystem>
#include <sys/stat.h>

using namespace LS::Tests;
namespace fs = std::filesystem;

namespace {

using Clock = std::chrono::steady_clock;

/// What a child process gets here; some mutants keep the library's decoders busy for ever.
constexpr std::chrono::milliseconds CHILDS_TIME(500);

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
        EXPECT_GT(std::chrono::duration<double>(MOST_SECONDS), Clock::now() - start);
        return decoded.image.IsOk();
    }

    /// A picture that is ended in its child process.
    void ExpectTooLong(const char* szName, const Bytes& bytes)
    {
        WriteElements(m_sPath, bytes);
        EXPECT_EQ("the decoder took too long", DecodeImage(m_sPath, CHILDS_TIME).sReason) << szName;
    }

    TempFolder m_folder;
    std::string m_sPath = m_folder.File("picture");

private:
    wxInitializer m_library;
    wxLogNull m_silence;
};

} // namespace

TEST_F(DamagedPictures, DecodeWholeAndMayBeCutAnywhere)
{
    for (const SamplePicture& picture : SamplePictures()) {
        SCOPED_TRACE(picture.sName);
        EXPECT_TRUE(Take(picture.bytes));
        const std::size_t nStep = IsLongForm() ? 1 : picture.bytes.size() / 12 + 1;
        for (std::size_t n = 0; n < picture.bytes.size(); n += nStep)
            Take(Bytes(picture.bytes.begin(), picture.bytes.begin() + static_cast<std::ptrdiff_t>(n)));
    }
}

TEST_F(DamagedPictures, MutantsAreDecodedOrRefused)
{
    auto vPictures = SamplePictures();
    WritePhotograph(m_sPath, {});
    vPictures.push_back({"photograph.jpg", ReadBytes(m_sPath)});
    const int nMutants = InForm(600, 50000);
    std::mt19937 random(1);
    int nDecoded = 0;
    for (int n = 0; n < nMutants && !HasFailure(); ++n) {
        const SamplePicture& picture = vPictures[static_cast<std::size_t>(n) % vPictures.size()];
        SCOPED_TRACE(testing::Message() << picture.sName << ", mutant " << n);
        nDecoded += Take(Mutated(picture.bytes, random));
    }
    std::printf("%d mutants, of which %d decode\n", nMutants, nDecoded);
    EXPECT_LT(nMutants / 20, nDecoded) << "damage that no decoder gets past tries little";
    EXPECT_GT(nMutants, nDecoded);
}

TEST_F(DamagedPictures, BombsEndInTime)
{
    EXPECT_TRUE(Take(Jpeg({.bProgressive = true})));
    EXPECT_TRUE(Take(JpegOfManyScans(40, 24, 1000)));
    // A file of half a megabyte that would keep a decoder busy for an hour, and a small one of usual scans.
    ExpectTooLong("many scans", JpegOfManyScans(5000, 4000, 50'000));
    ExpectTooLong("large scans", JpegOfManyScans(20'000, 20'000, 8));
    Bytes cut = Encoded(wxImage(64, 64), wxBITMAP_TYPE_PNG);
    const std::size_t nLength = Find(cut, {'I', 'D', 'A', 'T'}) - 4;
    cut.resize(nLength + 8 + 20); // a few bytes of the pixels,
    cut[nLength] = 0x7F;          // which claim to be 2 GB
    ExpectTooLong("a chunk beyond the end", cut);
    ExpectTooLong("more data than pixels", PngOfTooMuch(8192));
}

TEST_F(DamagedPictures, BeginningsWithManyGigabytesOfNothingEndInTime)
{
    using namespace std::string_view_literals;
    const std::string_view heads[] = {
        "\xFF\xD8"sv,
        "\xFF\xD8\xFF\xC2\0\x0B\x08\0\x08\0\x08\1\1\x11\0\xFF\xDA\0\x08\1\1\0\0\x3F\0"sv, // in its scan
        "\x89PNG\r\n\x1A\n\0\0\0\x0DIHDR\0\0\0\x08\0\0\0\x08\x08\2\0\0\0\x4B\x6D\x29\xDC"sv,
        "II*\0\x08\0\0\0"sv,
        "BM"sv,
        "P6 8 8 255\n"sv,
        "%!PS-Adobe-3.0 EPSF-3.0\n"sv,
        "<?xpacket begin='' id='W5M0MpCehiHzreSzNTczkc9d'?>"sv,
        "FUJIFILMCCD-RAW "sv,
    };
    for (const std::string_view sHead : heads) {
        SCOPED_TRACE(sHead);
        WriteText(m_sPath, sHead);
        fs::resize_file(m_sPath, std::uintmax_t{100} << 30);
        TakeFile();
    }
}

namespace {

/// Rows that are no photographs.
class StrangeRows : public FaultyProgram {
protected:
    StrangeRows() { RegisterImageHandlers(); }

    /// Merges the series and one more row with an exposure of its own, which is refused with a piece of text.
    void ExpectRefused(const std::string& sText, const std::string& sRow, RunOptions options = {}) const
    {
        SCOPED_TRACE(sRow);
        options.timeLimit = MOST_SECONDS;
        const ProgramRun run = Run({"--shutter", "1,2,3,4", "--aperture", "8", "-o", "x.exr", m_vsImages[0],
                                    m_vsImages[1], m_vsImages[2], "--", sRow},
                                   options);
        EXPECT_EQ(2, run.code) << run.err;
        ExpectHas(sText, run.err);
        ExpectOnly({});
    }

    std::string Place(const Bytes& bytes) const
    {
        WriteElements(m_places.File("picture"), bytes);
        return m_places.File("picture");
    }

    TempFolder m_places;

private:
    wxInitializer m_library;
};

} // namespace

TEST_F(StrangeRows, AreRefusedWithoutWaitingAndWithoutTheNetwork)
{
    ASSERT_EQ(0, mkfifo(m_places.File("pipe").c_str(), 0600));
    PutDevice(m_places.File("device"), ZERO_DEVICE);
    fs::create_symlink(m_places.File("loop"), m_places.File("loop"));
    WriteText(m_places.File("empty"), "");
    RunOptions options;
#ifdef LS_FAILING_SYSTEM // the sanitizers take the place of the library that watches
    options.environment = {"LD_PRELOAD=" LS_FAILING_SYSTEM, "LS_FAULT_CALL=network",
                           "LS_FAULT_MARK=" + m_places.File("met")};
#endif
    for (const std::string& sRow :
         {std::string("-"), std::string("http://127.0.0.1:9/a.jpg"), std::string("file:///etc/passwd"),
          std::string("data:,x"), std::string("/dev/stdin"), std::string("/proc/kmsg"), m_places.Path(),
          m_places.File("pipe"), m_places.File("device"), m_places.File("loop"), m_places.File("empty"),
          std::string("\n%n%s"), std::string(5000, 'a')}) {
        ExpectRefused("lumistrand-hdr-cli: ", sRow, options);
        EXPECT_FALSE(fs::exists(m_places.File("met"))) << "the network was asked";
    }
#ifdef LS_FAILING_SYSTEM
    options.program = "/usr/bin/getent";
    RunProgram({"ahosts", "127.0.0.1"}, options);
    EXPECT_TRUE(fs::exists(m_places.File("met"))) << "the network isn't watched";
#endif
}

#ifndef __SANITIZE_ADDRESS__ // which takes terabytes of addresses for itself
TEST_F(StrangeRows, HeadersThatAskForTooMuchMeetTheMemoryLimit)
{
    const wxImage blocks = BlockPicture(40, 24);
    const Bytes jpeg = Jpeg({}), progressive = Jpeg({.bProgressive = true});
    // 500 megapixels each, just below what is refused by the header alone.
    const struct {
        Bytes file;
        std::size_t nAt;
        Bytes size;
    } cases[] = {
        {Encoded(blocks, wxBITMAP_TYPE_PNG), 16, {0, 0, 0x4E, 0x20, 0, 0, 0x61, 0xA8}},
        {jpeg, Find(jpeg, {0xFF, 0xC0, 0, 17, 8}) + 5, {0x4E, 0x20, 0x61, 0xA8}},
        {progressive, Find(progressive, {0xFF, 0xC2, 0, 17, 8}) + 5, {0x4E, 0x20, 0x61, 0xA8}},
        {GreyTiff({20'000, 25'000}), 0, {}},
        {Encoded(blocks, wxBITMAP_TYPE_BMP), 18, {0x20, 0x4E, 0, 0, 0xA8, 0x61, 0, 0}},
        {Encoded(blocks, wxBITMAP_TYPE_GIF), 6, {0x20, 0x4E, 0xA8, 0x61}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::PrintToString(Bytes(c.file.begin(), c.file.begin() + 4)));
        Bytes file = c.file;
        std::copy(c.size.begin(), c.size.end(), file.begin() + static_cast<std::ptrdiff_t>(c.nAt));
        RunOptions options;
        options.memoryLimit = 1L << 30;
        ExpectRefused("picture", Place(file), options);
    }
}
#endif
