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
#include <netinet/in.h>
#include <sys/socket.h>
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

TEST_F(DamagedPictures, MutantsAreDecodedOrRefused)
{
    auto vPictures = SamplePictures();
    for (const SamplePicture& picture : vPictures)
        EXPECT_TRUE(Take(picture.bytes)) << picture.sName;
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
    void ExpectRefused(const std::string& sRow, const char* szText, long nMemoryLimit = -1) const
    {
        SCOPED_TRACE(sRow);
        RunOptions options;
        options.memoryLimit = nMemoryLimit;
        options.timeLimit = MOST_SECONDS;
        const ProgramRun run = Run({"--shutter", "1,2,3,4", "--aperture", "8", "-o", "x.exr", m_vsImages[0],
                                    m_vsImages[1], m_vsImages[2], "--", sRow},
                                   options);
        EXPECT_EQ(2, run.code) << run.err;
        ExpectHas(szText, run.err);
        ExpectOnly({});
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
    const int nServer = socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
    ASSERT_EQ(0, listen(nServer, 1)); // at any port that is free
    sockaddr_in address{};
    socklen_t nBytes = sizeof address;
    getsockname(nServer, reinterpret_cast<sockaddr*>(&address), &nBytes);
    const std::string sUrl = "http://127.0.0.1:" + std::to_string(ntohs(address.sin_port)) + "/a.jpg";
    for (const char* szName : {"pipe", "device", "loop", "empty", ""})
        ExpectRefused(m_places.File(szName), "lumistrand-hdr-cli: ");
    for (const std::string& sRow : Names{sUrl, "-", "file:///etc/passwd", "/dev/stdin", "\n%n%s"})
        ExpectRefused(sRow, "lumistrand-hdr-cli: ");
    EXPECT_EQ(-1, accept(nServer, nullptr, nullptr)) << "the network was asked";
    close(nServer);
}

#ifndef __SANITIZE_ADDRESS__ // which takes terabytes of addresses for itself
TEST_F(StrangeRows, HeadersThatAskForTooMuchMeetTheMemoryLimit)
{
    const wxImage blocks = BlockPicture(40, 24);
    const Bytes progressive = Jpeg({.bProgressive = true});
    // 500 megapixels each, just below what is refused by the header alone.
    const struct {
        Bytes file;
        std::size_t nAt;
        Bytes size;
    } cases[] = {
        {Encoded(blocks, wxBITMAP_TYPE_PNG), 16, {0, 0, 0x4E, 0x20, 0, 0, 0x61, 0xA8}},
        {progressive, Find(progressive, {0xFF, 0xC2, 0, 17, 8}) + 5, {0x4E, 0x20, 0x61, 0xA8}},
        {GreyTiff({20'000, 25'000}), 0, {}},
        {Encoded(blocks, wxBITMAP_TYPE_BMP), 18, {0x20, 0x4E, 0, 0, 0xA8, 0x61, 0, 0}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::PrintToString(Bytes(c.file.begin(), c.file.begin() + 4)));
        Bytes file = c.file;
        std::copy(c.size.begin(), c.size.end(), file.begin() + static_cast<std::ptrdiff_t>(c.nAt));
        WriteElements(m_places.File("picture"), file);
        ExpectRefused(m_places.File("picture"), "picture", 1L << 30);
    }
}
#endif
