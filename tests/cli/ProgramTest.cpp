// The headless program as a user calls it: results, messages, exit codes, and nothing left behind.
#include "tests/cli/Photographs.h"
#include "tests/cli/ProgramRun.h"
#include "tests/support/Pixels.h"
#include "tests/support/RgbeReader.h"

#include <exiv2/exiv2.hpp>
#include <wx/image.h>
#include <wx/init.h>

#include <algorithm>
#include <cmath>
#include <csignal>
#include <filesystem>
#include <limits>
#include <tuple>

using namespace LS::Tests;
namespace fs = std::filesystem;

namespace {

class Program : public ProgramFixture {
protected:
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

    RgbePicture Radiances(const char* szName) const { return ReadRgbe(ReadBytes(m_outputs.File(szName))); }

    const std::vector<std::string> m_vsImages = WriteSeries(m_sources.Path());
};

} // namespace

TEST_F(Program, WritesEachFormatAndSaysSo)
{
    const ProgramRun run = Run(Series({"-o", "x.EXR", "--output=x.hdr", "-ox.tiff"}));
    EXPECT_EQ(0, run.code) << run.err;
    EXPECT_EQ("", run.err);
    ExpectOnly({"x.EXR", "x.hdr", "x.tiff"});
    EXPECT_TRUE(ReadText(m_outputs.File("x.EXR")).starts_with("\x76\x2F\x31\x01"));
    EXPECT_TRUE(ReadText(m_outputs.File("x.tiff")).starts_with("II*"));
    const RgbePicture picture = Radiances("x.hdr");
    ASSERT_EQ(32U * 24, picture.vPixels.size());
    EXPECT_LT(RgbeValue(picture.vPixels.front(), 0), RgbeValue(picture.vPixels.back(), 0));

    const ProgramRun silent = Run(Series({"-o", "x.EXR", "--force", "--quiet"}));
    EXPECT_EQ(0, silent.code);
    EXPECT_EQ("", silent.out + silent.err);
    const ProgramRun detailed = Run(Series({"-o", "x.EXR", "--force", "--verbose"}));
    EXPECT_EQ("", detailed.err);
    for (const char* szText : {"a.jpg: 32 x 24, 1/240 s, f/8, E = 0.00053917", "conversion", "merge",
                               "saving", "peak memory", "x.EXR: 32 x 24, 3 images"})
        ExpectHas(szText, detailed.out);
}

TEST_F(Program, MergesInTheOrderOfFileNamesWithListsInTheOrderOfTheCommandLine)
{
    ASSERT_EQ(0, Run(Series({"-o", "exif.hdr", "-o", "exif.tif"})).code);
    ASSERT_EQ(0, Run({m_vsImages[2], m_vsImages[0], m_vsImages[1], "--shutter", "1/15,1/240,1/60",
                      "--aperture", "8", "-o", "list.tif"})
                     .code);
    EXPECT_EQ(ReadBytes(m_outputs.File("exif.tif")), ReadBytes(m_outputs.File("list.tif")));

    ASSERT_EQ(0, Run(Series({"--aperture", "4", "-o", "wide.hdr"})).code);
    RgbePicture expected = Radiances("exif.hdr");
    for (Rgbe& pixel : expected.vPixels)
        pixel[3] -= 2; // two stops more light
    EXPECT_EQ(expected.vPixels, Radiances("wide.hdr").vPixels);
}

TEST_F(Program, TurnedSeriesStandsUpright)
{
    ASSERT_EQ(0, Run(Series({"-o", "stored.hdr"})).code);
    for (const std::string& sImage : m_vsImages) {
        const auto photograph = Exiv2::ImageFactory::open(sImage);
        photograph->readMetadata();
        photograph->exifData()["Exif.Image.Orientation"] = std::uint16_t{6};
        photograph->writeMetadata();
    }
    ASSERT_EQ(0, Run(Series({"-o", "upright.hdr", "-o", "upright.png"})).code);
    EXPECT_EQ(wxSize(24, 32), Picture("upright.png").GetSize());
    const RgbePicture stored = Radiances("stored.hdr"), upright = Radiances("upright.hdr");
    ASSERT_EQ(24, upright.nWidth);
    for (std::size_t n = 0; n < stored.vPixels.size(); ++n) // the first row is at the right
        ASSERT_EQ(stored.vPixels[n], upright.vPixels[n % 32 * 24 + 23 - n / 32]) << n;
}

TEST_F(Program, SavedCurvesMakeTheSameImage)
{
    WriteSeries(m_sources.Path(), 120, 90); // enough samples for a recovery
    for (const char* szCurve : {"standard", "calculate"}) {
        SCOPED_TRACE(szCurve);
        const ProgramRun run =
            Run(Series({"--curve", szCurve, "--save-curve", "s.crv", "-o", "a.tif", "--verbose", "--force"}));
        ASSERT_EQ(0, run.code) << run.err;
        EXPECT_EQ(*szCurve == 'c', run.out.find("red   curve: values") != std::string::npos) << run.out;
        EXPECT_EQ(3072U, fs::file_size(m_outputs.File("s.crv")));
        ASSERT_EQ(0, Run(Series({"--curve", "s.crv", "-o", "b.tif", "--force"})).code);
        EXPECT_EQ(ReadBytes(m_outputs.File("a.tif")), ReadBytes(m_outputs.File("b.tif")));
    }
}

TEST_F(Program, ToneMappedPicturesShowTheSamePixels)
{
    const ProgramRun run = Run(Series({"-o", "x.png", "-o", "x.bmp", "-o", "x.tif", "--depth", "8",
                                       "--compression", "lzw", "--exposure", "1", "--gamma", "1.8"}));
    EXPECT_EQ(0, run.code) << run.err;
    const wxImage png = Picture("x.png");
    ASSERT_EQ(wxSize(32, 24), png.GetSize());
    for (const char* szName : {"x.bmp", "x.tif"})
        EXPECT_TRUE(SamePixels(png, Picture(szName))) << szName;

    ASSERT_EQ(0, Run(Series({"-o", "dark.png", "--exposure", "-2", "--gamma", "1.8"})).code);
    EXPECT_LT(Picture("dark.png").GetRed(28, 20), png.GetRed(28, 20));

    ASSERT_EQ(0, Run(Series({"-o", "low.jpg", "--quality", "10"})).code);
    ASSERT_EQ(0, Run(Series({"-o", "high.jpg", "--quality", "98"})).code);
    EXPECT_LT(fs::file_size(m_outputs.File("low.jpg")), fs::file_size(m_outputs.File("high.jpg")));
}

TEST_F(Program, UnusableInputIsNamed)
{
    const auto file = [this](const char* szName) { return m_sources.File(szName); };
    WritePhotograph(file("noshutter.jpg"), {1, std::nullopt, "8/1"});
    WritePhotograph(file("zero.jpg"), {1, "0/1", "8/1"});
    WritePhotograph(file("same.jpg"), {1, "2/120", "8/1"});
    WritePhotograph(file("large.jpg"), {1, "1/2", "8/1", 40, 24});
    WritePhotograph(file("dark.jpg"), {0.01, "1/60", "8/1"});
    WritePhotograph(file("dim.jpg"), {0.01, "1/15", "8/1"});
    WriteText(file("text.jpg"), "no picture");
    WriteText(file("short.crv"), "short");
    WriteElements(file("nan.crv"), std::vector<float>(768, std::numeric_limits<float>::quiet_NaN()));

    const struct {
        Arguments arguments;
        int nCode;
        const char* szText;
    } cases[] = {
        {Series({file("missing.jpg")}), 2, "No such file"},
        {Series({file("noshutter.jpg")}), 2, "--shutter"},
        {Series({file("zero.jpg")}), 2, "--shutter"},
        {Series({file("text.jpg")}), 2, "--shutter and --aperture"},
        {Series({file("text.jpg"), "--shutter", "1,2,3,4", "--aperture", "8"}), 2, "text.jpg"},
        {Series({file("same.jpg")}), 2, "b.jpg"},
        {Series({file("large.jpg")}), 2, "40 x 24"},
        {Series({"--shutter", "1,2,2", "--aperture", "8"}), 2, "c.jpg"},
        {Series({"--curve", "nosuch.crv"}), 2, "nosuch.crv"},
        {Series({"--curve", file("short.crv")}), 2, "short.crv"},
        {Series({"--curve", file("nan.crv")}), 2, "nan.crv"},
        {{m_vsImages[0], "--curve", "calculate"}, 2, "at least two images"},
        {{file("dark.jpg"), file("dim.jpg"), "--curve", "calculate"}, 3, "a curve needs a range of 50"},
    };
    for (const auto& c : cases) {
        Arguments arguments = c.arguments;
        arguments.insert(arguments.end(), {"-o", "x.exr"});
        ExpectFailure(c.nCode, c.szText, Run(arguments));
        ExpectOnly({});
    }
}

TEST_F(Program, OutputsThatCannotBeWrittenAreRefusedBeforeTheWork)
{
    WriteText(m_outputs.File("old.exr"), "precious");
    const std::pair<Arguments, const char*> cases[] = {
        {{"-o", "old.exr"}, "--force"},
        {{"-o", "missing/x.exr"}, "missing/x.exr"},
        {{"-o", m_vsImages[0], "--format", "exr", "--force"}, "one of the photographs"},
        {{"-o", "x.exr", "-o", "x.exr"}, "twice"},
        {{"-o", "x.exr", "--save-curve", "old.exr"}, "--force"},
    };
    const Bytes photograph = ReadBytes(m_vsImages[0]);
    for (const auto& [options, szText] : cases) {
        SCOPED_TRACE(options[1]);
        ExpectFailure(4, szText, Run(Series(options)));
        ExpectOnly({"old.exr"});
        EXPECT_EQ("precious", ReadText(m_outputs.File("old.exr")));
        EXPECT_EQ(photograph, ReadBytes(m_vsImages[0]));
    }
    EXPECT_EQ(0, Run(Series({"-o", "old.exr", "--force"})).code);
    EXPECT_LT(8U, fs::file_size(m_outputs.File("old.exr")));
}

// A write beyond the limit sends a signal that would end the program where it stands.
TEST_F(Program, LimitsOnFileSizesAreFullDisks)
{
    // Source cache files have 3200 bytes, the float cache file 9600, and the TIFF more for its many strips.
    WriteSeries(m_sources.Path(), 2, 400);
    WriteText(m_outputs.File("old.exr"), "precious");
    const Arguments arguments = Series({"-o", "old.exr", "-o", "x.tif", "--save-curve", "s.crv", "--force"});
    const std::pair<long, int> cases[] = {{3199, 3}, {9599, 3}, {9601, 4}};
    for (const auto& [nLimit, nCode] : cases) {
        SCOPED_TRACE(nLimit);
        RunOptions options;
        options.fileSizeLimit = nLimit;
        ExpectFailure(nCode, "File too large", Run(arguments, options));
        ExpectOnly({"old.exr"});
        EXPECT_EQ("precious", ReadText(m_outputs.File("old.exr")));
    }
}

TEST_F(Program, KeepsItsWorkInTheFolderNamed)
{
    const TempFolder work, other;
    fs::copy_file(m_vsImages[2], other.File("a.jpg")); // the name of another image of the series
    const auto keep = [&](const char* szOutput) {
        return Run({m_vsImages[0], m_vsImages[1], other.File("a.jpg"), "-o", szOutput, "--work-dir",
                    work.Path(), "--keep-work"});
    };
    WriteText(work.File("unrelated.tmp"), "mine");
    EXPECT_EQ(0, Run(Series({"-o", "x.exr", "--work-dir", work.Path()})).code);
    EXPECT_EQ(Names{"unrelated.tmp"}, work.Names()) << "nothing is kept unasked";
    ASSERT_EQ(0, keep("x.hdr").code);

    Names names = work.Names();
    ASSERT_EQ(5U, names.size());
    const auto floats =
        std::find_if(names.begin(), names.end(), [](const std::string& s) { return s[0] == '2'; });
    ASSERT_NE(names.end(), floats);
    EXPECT_EQ(32U * 24 * 12, fs::file_size(work.File(*floats)));
    names.erase(floats);
    EXPECT_EQ((Names{"a.jpg.2.tmp", "a.jpg.tmp", "b.jpg.tmp", "unrelated.tmp"}), names);
    EXPECT_NE(ReadBytes(work.File("a.jpg.tmp")), ReadBytes(work.File("a.jpg.2.tmp")));

    ExpectFailure(4, "a.jpg.tmp", keep("y.exr")); // what is there in the folder is never replaced
    for (const std::string& sName : names)
        fs::remove(work.File(sName));
    fs::create_symlink("nowhere", work.File("b.jpg.tmp"));
    ExpectFailure(4, "b.jpg.tmp", keep("y.exr"));
    ExpectOnly({"x.exr", "x.hdr"});
}

TEST_F(Program, WhatComesUpMeanwhileIsNotReplaced)
{
    WriteSeries(m_sources.Path(), 800, 600);
    const TempFolder work;
    const auto merge = [&](const std::function<void()>& befall) {
        RunOptions options;
        options.when = [&](pid_t) {
            const bool bWorks = work.Names().size() == 1 && !fs::is_empty(work.File(work.Names()[0]));
            if (bWorks)
                befall();
            return bWorks;
        };
        return Run(Series({"-o", "x.exr", "--work-dir", work.Path(), "--keep-work"}), options);
    };
    ExpectFailure(4, "x.exr", merge([&] { WriteText(m_outputs.File("x.exr"), "mine"); }));
    EXPECT_EQ("mine", ReadText(m_outputs.File("x.exr")));
    fs::remove(m_outputs.File("x.exr"));
    for (const std::string& sName : work.Names())
        fs::remove(work.File(sName));

    ExpectFailure(4, "a.jpg.tmp", merge([&] { fs::create_directory(work.File("a.jpg.tmp")); }));
    ExpectOnly({});
}

TEST_F(Program, InterruptsLeaveNothing)
{
    WriteSeries(m_sources.Path(), 1500, 1000);
    const auto countWorking = [this] {
        return std::distance(fs::recursive_directory_iterator(m_temporary.Path()), {});
    };
    const std::tuple<const char*, int, std::function<bool()>> cases[] = {
        {"the working folder is there", SIGINT, [&] { return countWorking() >= 1; }},
        {"the first photograph is converted", SIGTERM, [&] { return countWorking() >= 2; }},
        {"the merge has begun", SIGHUP, [&] { return countWorking() >= 5; }},
        {"the first output has begun", SIGINT, [this] { return !m_outputs.Names().empty(); }},
    };
    for (const auto& [szMoment, nSignal, hasCome] : cases) {
        SCOPED_TRACE(szMoment);
        RunOptions options;
        options.when = [&come = hasCome](pid_t) { return come(); };
        options.signal = nSignal;
        ExpectFailure(130, "cancelled", Run(Series({"-o", "x.png", "-o", "x.tif"}), options));
        ExpectOnly({});
    }
}

TEST_F(Program, AnyNameWorksWithoutALocale)
{
    const std::string sBytes = m_sources.File("caf\xE9 %s.jpg"); // no UTF-8, and a format
    const std::string sText = m_sources.File("\xE5\x86\x99\xE7\x9C\x9F|.jpg");
    fs::copy_file(m_vsImages[0], sBytes);
    fs::copy_file(m_vsImages[1], sText);
    RunOptions options;
    options.environment = {"LC_ALL=C"};
    const ProgramRun run = Run({sBytes, sText, "-o", "\xC3\xBC%n.exr", "--save-curve", "\xFF.crv"}, options);
    EXPECT_EQ(0, run.code) << run.err;
    ExpectOnly({"\xC3\xBC%n.exr", "\xFF.crv"});
}

TEST_F(Program, WrongCommandLinesAreOneLine)
{
    ExpectFailure(1, "--nosuch", Run({"--nosuch"}));
    EXPECT_EQ(0, Run({"--help"}).code);
}
