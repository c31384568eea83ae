// The headless program as a user calls it: results, messages, exit codes, and nothing left behind.
#include "tests/cli/Photographs.h"
#include "tests/cli/ProgramRun.h"
#include "tests/support/TempFolder.h"

#include <exiv2/exiv2.hpp>
#include <gtest/gtest.h>
#include <tiffio.h>
#include <wx/image.h>
#include <wx/init.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <memory>

using namespace LS::Tests;
namespace fs = std::filesystem;

namespace {

using Arguments = std::vector<std::string>;
using Names = std::vector<std::string>;

/// A folder with a series, one for outputs, and one for temporary files that must be empty at the end.
class Program : public testing::Test {
protected:
    Program() : m_vsImages(WriteSeries(m_sources.Path())) {}

    ProgramRun Run(const Arguments& arguments, RunOptions options = {})
    {
        options.folder = m_outputs.Path();
        options.environment.push_back("TMPDIR=" + m_temporary.Path());
        return RunProgram(arguments, options);
    }

    /// The series and some options.
    Arguments Series(const Arguments& options) const
    {
        Arguments arguments = m_vsImages;
        arguments.insert(arguments.end(), options.begin(), options.end());
        return arguments;
    }

    wxImage Picture(const char* szName) const
    {
        const wxInitializer library;
        wxInitAllImageHandlers();
        return wxImage(wxString::FromUTF8(m_outputs.File(szName)));
    }

    void ExpectOnly(const Names& outputs)
    {
        EXPECT_EQ(outputs, m_outputs.Names());
        EXPECT_TRUE(m_temporary.Names().empty()) << m_temporary.Names()[0];
    }

    TempFolder m_sources, m_outputs, m_temporary;
    std::vector<std::string> m_vsImages;
};

Bytes Pixels(const wxImage& image)
{
    return {image.GetData(), image.GetData() + std::ptrdiff_t{3} * image.GetWidth() * image.GetHeight()};
}

std::size_t Lines(const std::string& sText)
{
    return static_cast<std::size_t>(std::count(sText.begin(), sText.end(), '\n'));
}

/// All floats of a floating point TIFF.
std::vector<float> TiffFloats(const std::string& sPath)
{
    const std::unique_ptr<TIFF, decltype(&TIFFClose)> pFile(TIFFOpen(sPath.c_str(), "r"), TIFFClose);
    std::vector<float> vfAll;
    if (!pFile)
        return vfAll;
    std::vector<float> row(static_cast<std::size_t>(TIFFScanlineSize(pFile.get())) / sizeof(float));
    for (std::uint32_t y = 0; TIFFReadScanline(pFile.get(), row.data(), y) == 1; ++y) {
        vfAll.insert(vfAll.end(), row.begin(), row.end());
        std::uint32_t nHeight = 0;
        TIFFGetField(pFile.get(), TIFFTAG_IMAGELENGTH, &nHeight);
        if (y + 1 == nHeight)
            break;
    }
    return vfAll;
}

} // namespace

TEST_F(Program, WritesEachFormat)
{
    const ProgramRun run = Run(Series({"-o", "x.exr", "-o", "x.hdr", "-o", "x.tiff"}));
    EXPECT_EQ(0, run.code) << run.err;
    EXPECT_EQ("", run.err);
    EXPECT_EQ(3U, Lines(run.out)) << run.out;
    ExpectOnly({"x.exr", "x.hdr", "x.tiff"});

    const Bytes exr = ReadBytes(m_outputs.File("x.exr"));
    ASSERT_LT(4U, exr.size());
    EXPECT_EQ((Bytes{0x76, 0x2F, 0x31, 0x01}), Bytes(exr.begin(), exr.begin() + 4));
    const Bytes hdr = ReadBytes(m_outputs.File("x.hdr"));
    EXPECT_EQ("#?RGBE\n", std::string(hdr.begin(), hdr.begin() + 7));

    const std::vector<float> vfPixels = TiffFloats(m_outputs.File("x.tiff"));
    ASSERT_EQ(32U * 24 * 3, vfPixels.size());
    EXPECT_TRUE(
        std::all_of(vfPixels.begin(), vfPixels.end(), [](float f) { return f > 0 && std::isfinite(f); }));
    const std::size_t nMiddleRow = std::size_t{3} * 32 * 12;
    EXPECT_LT(vfPixels[nMiddleRow], vfPixels[nMiddleRow + 60]) << "the scene grows brighter to the right";
}

TEST_F(Program, MergesInTheOrderOfFileNamesWithListsInTheOrderOfTheCommandLine)
{
    ASSERT_EQ(0, Run(Series({"-o", "exif.tif"})).code);
    const Arguments shuffled{m_vsImages[2], m_vsImages[0], m_vsImages[1]};
    Arguments arguments = shuffled;
    arguments.insert(arguments.end(), {"--shutter", "1/15,1/240,1/60", "--aperture", "8", "-o", "list.tif"});
    ASSERT_EQ(0, Run(arguments).code);
    EXPECT_EQ(ReadBytes(m_outputs.File("exif.tif")), ReadBytes(m_outputs.File("list.tif")));

    ASSERT_EQ(0, Run(Series({"--aperture", "4", "-o", "wide.tif"})).code);
    const std::vector<float> vfExif = TiffFloats(m_outputs.File("exif.tif"));
    const std::vector<float> vfWide = TiffFloats(m_outputs.File("wide.tif"));
    for (std::size_t i = 0; i < vfExif.size(); ++i)
        ASSERT_FLOAT_EQ(vfExif[i] / 4, vfWide[i]) << "two stops more light";
}

TEST_F(Program, TurnedSeriesStandsUpright)
{
    ASSERT_EQ(0, Run(Series({"-o", "stored.tif"})).code);
    for (const std::string& sImage : m_vsImages) {
        const auto photograph = Exiv2::ImageFactory::open(sImage);
        photograph->readMetadata();
        photograph->exifData()["Exif.Image.Orientation"] = std::uint16_t{6};
        photograph->writeMetadata();
    }
    const ProgramRun run = Run(Series({"-o", "upright.tif", "-o", "upright.png"}));
    ASSERT_EQ(0, run.code) << run.err;
    EXPECT_EQ(wxSize(24, 32), Picture("upright.png").GetSize());
    const std::vector<float> vfStored = TiffFloats(m_outputs.File("stored.tif"));
    const std::vector<float> vfUpright = TiffFloats(m_outputs.File("upright.tif"));
    ASSERT_EQ(vfStored.size(), vfUpright.size());
    for (std::size_t n = 0; n < vfStored.size(); ++n) {
        const std::size_t x = n / 3 % 32, y = n / 3 / 32; // the first row is at the right
        ASSERT_EQ(vfStored[n], vfUpright[3 * (x * 24 + 23 - y) + n % 3]) << x << ", " << y;
    }
}

TEST_F(Program, SavedCurvesMakeTheSameImage)
{
    ASSERT_EQ(0, Run(Series({"--save-curve", "s.crv", "-o", "a.tif"})).code);
    EXPECT_EQ(3072U, fs::file_size(m_outputs.File("s.crv")));
    const ProgramRun run = Run(Series({"--curve", "s.crv", "-o", "b.tif"}));
    EXPECT_EQ(0, run.code) << run.err;
    EXPECT_EQ(ReadBytes(m_outputs.File("a.tif")), ReadBytes(m_outputs.File("b.tif")));
}

TEST_F(Program, ToneMappedPicturesShowTheSamePixels)
{
    const ProgramRun run = Run(Series({"-o", "x.png", "-o", "x.bmp", "-o", "x.tif", "--depth", "8",
                                       "--compression", "lzw", "--exposure", "1", "--gamma", "1.8"}));
    EXPECT_EQ(0, run.code) << run.err;
    ExpectOnly({"x.bmp", "x.png", "x.tif"});
    const wxImage png = Picture("x.png");
    ASSERT_EQ(wxSize(32, 24), png.GetSize());
    for (const char* szName : {"x.bmp", "x.tif"}) {
        const wxImage other = Picture(szName);
        ASSERT_EQ(png.GetSize(), other.GetSize());
        EXPECT_EQ(Pixels(png), Pixels(other)) << szName;
    }
    EXPECT_GE(249, *std::max_element(png.GetData(), png.GetData() + Pixels(png).size()));

    ASSERT_EQ(0, Run(Series({"-o", "dark.png", "--exposure", "-2", "--gamma", "1.8"})).code);
    EXPECT_LT(Picture("dark.png").GetRed(28, 20), png.GetRed(28, 20));
}

TEST_F(Program, JpegQualityCounts)
{
    ASSERT_EQ(0, Run(Series({"-o", "low.jpg", "--quality", "10"})).code);
    ASSERT_EQ(0, Run(Series({"-o", "high.jpg", "--quality", "98"})).code);
    EXPECT_LT(fs::file_size(m_outputs.File("low.jpg")), fs::file_size(m_outputs.File("high.jpg")));
    EXPECT_EQ(wxSize(32, 24), Picture("low.jpg").GetSize());
}

TEST_F(Program, FailedPictureLeavesNothing)
{
    // Strips of one row are too low for the blocks of JPEG.
    const ProgramRun run =
        Run(Series({"-o", "a.png", "-o", "x.tif", "--depth", "8", "--compression", "jpeg"}));
    EXPECT_EQ(4, run.code);
    EXPECT_NE(std::string::npos, run.err.find("x.tif")) << run.err;
    ExpectOnly({});
}

TEST_F(Program, RecoversTheCurve)
{
    WriteSeries(m_sources.Path(), 120, 90);
    const ProgramRun run =
        Run(Series({"--curve", "calculate", "--save-curve", "r.crv", "-o", "a.tif", "--verbose"}));
    ASSERT_EQ(0, run.code) << run.err;
    for (const char* szText :
         {"red   curve: values", "green curve: values", "blue  curve: values", "256 samples"})
        EXPECT_NE(std::string::npos, run.out.find(szText)) << szText << "\n" << run.out;
    ASSERT_EQ(0, Run(Series({"--curve", "r.crv", "-o", "b.tif"})).code);
    EXPECT_EQ(ReadBytes(m_outputs.File("a.tif")), ReadBytes(m_outputs.File("b.tif")));
}

TEST_F(Program, RecoveryThatCannotWorkSaysWhyAndNamesTheLimit)
{
    Arguments many;
    for (int i = 0; i < 257; ++i) {
        many.push_back(m_sources.File("many" + std::to_string(i) + ".jpg"));
        WritePhotograph(many.back(), {1, std::to_string(i + 1) + "/1000"});
    }
    for (const char* szName : {"dark.jpg", "dim.jpg"})
        WritePhotograph(m_sources.File(szName), {0.01, szName[1] == 'a' ? "1/60" : "1/15", "8/1"});

    const struct {
        Arguments images;
        int code;
        const char* szReason;
    } cases[] = {
        {{m_vsImages[0]}, 2, "at least two images"},
        {many, 2, "at most 256 images"},
        {{m_sources.File("dark.jpg"), m_sources.File("dim.jpg")}, 3, "a curve needs a range of 50"},
        {{m_vsImages[1], m_vsImages[2]}, 3, "in red; a curve of 2 images needs 256"},
    };
    for (const auto& c : cases) {
        Arguments arguments = c.images;
        arguments.insert(arguments.end(), {"--curve", "calculate", "-o", "x.exr"});
        const ProgramRun run = Run(arguments);
        EXPECT_EQ(c.code, run.code);
        EXPECT_EQ(1U, Lines(run.err)) << run.err;
        EXPECT_NE(std::string::npos, run.err.find(c.szReason)) << run.err;
    }
    ExpectOnly({});
}

TEST_F(Program, UnusableInputIsNamed)
{
    WritePhotograph(m_sources.File("noshutter.jpg"), {1, std::nullopt, "8/1"});
    WritePhotograph(m_sources.File("nostop.jpg"), {1, "1/60", std::nullopt});
    WritePhotograph(m_sources.File("zero.jpg"), {1, "0/1", "8/1"});
    WritePhotograph(m_sources.File("same.jpg"), {1, "2/120", "8/1"});
    WritePhotograph(m_sources.File("large.jpg"), {1, "1/2", "8/1", 40, 24});
    WritePhotograph(m_sources.File("good.jpg"), {1, "1/2", "8/1"});
    WriteText(m_sources.File("text.jpg"), "no picture");
    WriteText(m_sources.File("short.crv"), "short");
    fs::create_directory(m_sources.File("folder.jpg"));

    const struct {
        const char* name;
        Arguments options;
        const char* text;
    } cases[] = {
        {"missing.jpg", {}, "No such file"},
        {"folder.jpg", {}, "not a regular file"},
        {"noshutter.jpg", {}, "--shutter"},
        {"nostop.jpg", {}, "--aperture"},
        {"zero.jpg", {}, "--shutter"},
        {"text.jpg", {}, "--shutter and --aperture"},
        {"text.jpg", {"--shutter", "1,2,3,4", "--aperture", "8"}, "text.jpg"},
        {"same.jpg", {}, "b.jpg"},
        {"large.jpg", {}, "40 x 24"},
        {"good.jpg", {"--curve", "nosuch.crv"}, "nosuch.crv"},
        {"good.jpg", {"--curve", m_sources.File("short.crv")}, "short.crv"},
        {"good.jpg", {"--shutter", "1,2,4,4", "--aperture", "8"}, "good.jpg"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.name) + " " + c.text);
        Arguments arguments = Series({"-o", "x.exr", m_sources.File(c.name)});
        arguments.insert(arguments.end(), c.options.begin(), c.options.end());
        const ProgramRun run = Run(arguments);
        EXPECT_EQ(2, run.code);
        EXPECT_EQ(1U, Lines(run.err)) << run.err;
        EXPECT_NE(std::string::npos, run.err.find(c.text)) << run.err;
        EXPECT_EQ("", run.out);
        ExpectOnly({});
    }
}

TEST_F(Program, OutputsThatCannotBeWrittenAreRefusedBeforeTheWork)
{
    WriteText(m_outputs.File("old.exr"), "precious");
    fs::create_directory(m_outputs.File("folder.exr"));
    const struct {
        Arguments options;
        const char* text;
    } cases[] = {
        {{"-o", "old.exr"}, "--force"},
        {{"-o", "folder.exr"}, "not a regular file"},
        {{"-o", "folder.exr", "--force"}, "not a regular file"},
        {{"-o", "missing/x.exr"}, "missing/x.exr"},
        {{"-o", m_vsImages[0], "--format", "exr", "--force"}, "one of the photographs"},
        {{"-o", "x.exr", "-o", "x.exr"}, "twice"},
        {{"-o", "x.exr", "--save-curve", "old.exr"}, "--force"},
        {{"-o", "x.exr", "--save-curve", "missing/s.crv"}, "missing/s.crv"},
    };
    const Bytes photograph = ReadBytes(m_vsImages[0]);
    for (const auto& c : cases) {
        SCOPED_TRACE(c.options[1]);
        const ProgramRun run = Run(Series(c.options));
        EXPECT_EQ(4, run.code);
        EXPECT_EQ(1U, Lines(run.err)) << run.err;
        EXPECT_NE(std::string::npos, run.err.find(c.text)) << run.err;
        ExpectOnly({"folder.exr", "old.exr"});
        EXPECT_EQ(8U, fs::file_size(m_outputs.File("old.exr")));
        EXPECT_EQ(photograph, ReadBytes(m_vsImages[0]));
    }
    EXPECT_EQ(0, Run(Series({"-o", "old.exr", "--force"})).code);
    EXPECT_LT(8U, fs::file_size(m_outputs.File("old.exr")));
}

TEST_F(Program, FullDiskLeavesNothingAndKeepsTheOldFile)
{
    // Source cache files have 3072 bytes, the float cache file 9216, the outputs some hundreds and more.
    const struct {
        const char* name;
        long limit;
        int code;
        Arguments options;
    } cases[] = {
        {"conversion", 1000, 3, {"-o", "old.exr"}},
        {"merge", 9000, 3, {"-o", "old.exr"}},
        {"conversion, last byte", 3071, 3, {"-o", "old.exr"}},
        {"merge, last byte", 9215, 3, {"-o", "old.exr"}},
    };
    WriteText(m_outputs.File("old.exr"), "precious");
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        Arguments options = c.options;
        options.emplace_back("--force");
        RunOptions runOptions;
        runOptions.fileSizeLimit = c.limit;
        const ProgramRun run = Run(Series(options), runOptions);
        EXPECT_EQ(c.code, run.code) << run.err;
        EXPECT_EQ(1U, Lines(run.err)) << run.err;
        ExpectOnly({"old.exr"});
        EXPECT_EQ("precious", std::string(8, 'p').replace(0, 8, [&] {
            const Bytes bytes = ReadBytes(m_outputs.File("old.exr"));
            return std::string(bytes.begin(), bytes.end());
        }()));
    }
}

TEST_F(Program, FailedSaveLeavesNothing)
{
    // Many small strips make a TIFF file larger than the float cache file that it is written from.
    const std::vector<std::string> vsImages = WriteSeries(m_sources.Path(), 2, 400);
    const ProgramRun whole = Run(Series({"-o", "x.tif"}));
    ASSERT_EQ(0, whole.code) << whole.err;
    const auto nBytes = static_cast<long>(fs::file_size(m_outputs.File("x.tif")));
    ASSERT_LT(2 * 400 * 12, nBytes);
    fs::remove(m_outputs.File("x.tif"));
    for (const long nLimit : {nBytes - 1, 2L * 400 * 12 + 1}) {
        SCOPED_TRACE(nLimit);
        RunOptions options;
        options.fileSizeLimit = nLimit;
        const ProgramRun run = Run(Series({"-o", "x.exr", "-o", "x.tif", "--save-curve", "s.crv"}), options);
        EXPECT_EQ(4, run.code);
        EXPECT_EQ(1U, Lines(run.err)) << run.err;
        EXPECT_NE(std::string::npos, run.err.find("x.tif")) << run.err;
        ExpectOnly({});
    }
}

TEST_F(Program, KeepsItsWorkInTheFolderNamed)
{
    const TempFolder work, other;
    fs::copy_file(m_vsImages[2], other.File("a.jpg")); // the name of another image of the series
    const Arguments arguments{m_vsImages[0], m_vsImages[1], other.File("a.jpg"), "-o",
                              "x.exr",       "--work-dir",  work.Path(),         "--keep-work"};
    WriteText(work.File("unrelated.tmp"), "mine");
    const ProgramRun run = Run(arguments);
    ASSERT_EQ(0, run.code) << run.err;
    ExpectOnly({"x.exr"});

    Names names = work.Names();
    ASSERT_EQ(5U, names.size());
    const auto floats =
        std::find_if(names.begin(), names.end(), [](const std::string& s) { return s[0] == '2'; });
    ASSERT_NE(names.end(), floats);
    EXPECT_EQ(32U * 24 * 12, fs::file_size(work.File(*floats)));
    names.erase(floats);
    EXPECT_EQ((Names{"a.jpg.2.tmp", "a.jpg.tmp", "b.jpg.tmp", "unrelated.tmp"}), names);
    EXPECT_EQ(32U * 24 * 4, fs::file_size(work.File("a.jpg.tmp")));
    EXPECT_NE(ReadBytes(work.File("a.jpg.tmp")), ReadBytes(work.File("a.jpg.2.tmp")));

    Arguments again = arguments;
    again.emplace_back("--force");
    const ProgramRun refused = Run(again);
    EXPECT_EQ(4, refused.code) << "a file of the folder is never replaced";
    EXPECT_NE(std::string::npos, refused.err.find("a.jpg.tmp")) << refused.err;
    EXPECT_EQ(5U, work.Names().size());
}

TEST_F(Program, RemovesItsWorkFromTheFolderNamed)
{
    const TempFolder work;
    WriteText(work.File("unrelated.tmp"), "mine");
    EXPECT_EQ(0, Run(Series({"-o", "x.exr", "--work-dir", work.Path()})).code);
    EXPECT_EQ(Names{"unrelated.tmp"}, work.Names());
    const ProgramRun run = Run(Series({"-o", "y.exr", "--work-dir", work.File("missing")}));
    EXPECT_EQ(3, run.code);
    EXPECT_NE(std::string::npos, run.err.find("missing")) << run.err;
}

TEST_F(Program, InterruptsLeaveNothing)
{
    const std::vector<std::string> vsImages = WriteSeries(m_sources.Path(), 1500, 1000);
    int nCancelled = 0;
    for (const double dSeconds : {0.05, 0.1, 0.15, 0.2, 0.25, 0.3, 0.35, 0.4, 0.5, 0.7, 1.0}) {
        SCOPED_TRACE(dSeconds);
        RunOptions options;
        options.interruptAfter = dSeconds;
        const ProgramRun run = Run(Series({"-o", "x.png", "-o", "x.tif"}), options);
        if (run.code == 0) {
            ExpectOnly({"x.png", "x.tif"});
            fs::remove(m_outputs.File("x.png"));
            fs::remove(m_outputs.File("x.tif"));
            continue;
        }
        ++nCancelled;
        // 130 too if the signal came before the program could catch it: a shell's word for that death.
        EXPECT_EQ(130, run.code) << run.err;
        ExpectOnly({});
    }
    EXPECT_LT(0, nCancelled);
}

TEST_F(Program, QuietAndVerbose)
{
    const ProgramRun quiet = Run(Series({"-o", "q.exr", "--quiet"}));
    EXPECT_EQ(0, quiet.code);
    EXPECT_EQ("", quiet.out + quiet.err);

    const ProgramRun verbose = Run(Series({"-o", "v.exr", "--verbose"}));
    EXPECT_EQ("", verbose.err);
    for (const char* szText : {"a.jpg: 32 x 24, 1/240 s, f/8, E = 0.00053917", "conversion", "merge",
                               "saving", "peak memory", "v.exr: 32 x 24, 3 images"})
        EXPECT_NE(std::string::npos, verbose.out.find(szText)) << szText << "\n" << verbose.out;
}

TEST_F(Program, AnyNameWorksInAnyLocale)
{
    const std::string sBytes = m_sources.File("caf\xE9 %s.jpg"); // no UTF-8, and a format
    const std::string sText = m_sources.File("\xE5\x86\x99\xE7\x9C\x9F|.jpg");
    fs::copy_file(m_vsImages[0], sBytes);
    fs::copy_file(m_vsImages[1], sText);
    for (const char* szLocale : {"LC_ALL=C", "LC_ALL=C.UTF-8"}) {
        SCOPED_TRACE(szLocale);
        RunOptions options;
        options.environment = {szLocale};
        const ProgramRun run =
            Run({sBytes, sText, "-o", "\xC3\xBC%n.exr", "--force", "--save-curve", "\xFF.crv"}, options);
        EXPECT_EQ(0, run.code) << run.err;
        ExpectOnly({"\xC3\xBC%n.exr", "\xFF.crv"});
    }
}

TEST_F(Program, WrongCommandLinesAreOneLine)
{
    const ProgramRun run = Run({"--nosuch"});
    EXPECT_EQ(1, run.code);
    EXPECT_EQ(1U, Lines(run.err)) << run.err;
    EXPECT_EQ(0, Run({"--help"}).code);
    EXPECT_EQ(0, Run({"--version"}).code);
}
