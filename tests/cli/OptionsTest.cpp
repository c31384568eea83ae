// The command line as a value.
#include "cli/Options.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using Arguments = std::vector<std::string>;

TEST(Options, Defaults)
{
    const ParsedCommandLine parsed = ParseCommandLine({"a.jpg", "-o", "out.exr", "b.jpg"});
    ASSERT_TRUE(parsed.options) << parsed.sText;
    EXPECT_EQ((Arguments{"a.jpg", "b.jpg"}), parsed.options->vsImages);
    ASSERT_EQ(1U, parsed.options->vOutputs.size());
    EXPECT_EQ("out.exr", parsed.options->vOutputs[0].sPath);
    EXPECT_EQ(CurveSource::Standard, parsed.options->curve);
    EXPECT_EQ(0, parsed.options->fExposure);
    EXPECT_EQ(2.2F, parsed.options->fGamma);
    EXPECT_EQ(95, parsed.options->nQuality);
    EXPECT_EQ(2U, parsed.options->nCompression);
    EXPECT_FALSE(parsed.options->bForce || parsed.options->bKeepWork);
    EXPECT_EQ(Verbosity::Normal, parsed.options->verbosity);
}

TEST(Options, FormatOfAnOutput)
{
    const struct {
        Arguments arguments;
        OutputFormat format;
    } cases[] = {
        {{"-o", "x.exr"}, OutputFormat::OpenExr},
        {{"-o", "x.EXR"}, OutputFormat::OpenExr},
        {{"--output=a.b/x.hdr"}, OutputFormat::Radiance},
        {{"-ox.tif"}, OutputFormat::FloatTiff},
        {{"-o", "x.tiff"}, OutputFormat::FloatTiff},
        {{"-o", "x.exr", "--format", "hdr"}, OutputFormat::Radiance},
        {{"-o", "noextension", "--format=tiff"}, OutputFormat::FloatTiff},
        {{"-o", "x.jpg"}, OutputFormat::Jpeg},
        {{"-o", "x.JPEG"}, OutputFormat::Jpeg},
        {{"-o", "x.png"}, OutputFormat::Png},
        {{"-o", "x.bmp"}, OutputFormat::Bmp},
        {{"-o", "x.tif", "--depth", "8"}, OutputFormat::LdrTiff},
        {{"--depth=32", "-o", "x.tif"}, OutputFormat::FloatTiff},
        {{"-o", "x.exr", "--depth", "8"}, OutputFormat::OpenExr},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.arguments.back());
        Arguments arguments = c.arguments;
        arguments.emplace_back("a.jpg");
        const ParsedCommandLine parsed = ParseCommandLine(arguments);
        ASSERT_TRUE(parsed.options) << parsed.sText;
        EXPECT_EQ(c.format, parsed.options->vOutputs[0].format);
    }
}

TEST(Options, Lists)
{
    const ParsedCommandLine parsed =
        ParseCommandLine({"-o", "x.exr", "--shutter", "1/60,0.25,2", "--aperture=5.6", "a", "b", "c"});
    ASSERT_TRUE(parsed.options) << parsed.sText;
    EXPECT_EQ((std::vector<float>{static_cast<float>(1.0 / 60), 0.25F, 2}), parsed.options->vfShutters);
    EXPECT_EQ(std::vector<float>{5.6F}, parsed.options->vfApertures);
}

TEST(Options, CurvesAndPictures)
{
    const ParsedCommandLine parsed =
        ParseCommandLine({"a", "-o", "x.jpg", "--curve", "calculate", "--exposure=-1.5", "--gamma", "1.8",
                          "--quality", "0", "--compression", "lzw"});
    ASSERT_TRUE(parsed.options) << parsed.sText;
    EXPECT_EQ(CurveSource::Calculate, parsed.options->curve);
    EXPECT_EQ(-1.5F, parsed.options->fExposure);
    EXPECT_EQ(1.8F, parsed.options->fGamma);
    EXPECT_EQ(0, parsed.options->nQuality);
    EXPECT_EQ(3U, parsed.options->nCompression);

    const ParsedCommandLine file = ParseCommandLine({"a", "-o", "x.jpg", "--curve", "./standard"});
    ASSERT_TRUE(file.options);
    EXPECT_EQ(CurveSource::File, file.options->curve);
    EXPECT_EQ("./standard", file.options->sCurve);
}

TEST(Options, Series)
{
    const ParsedCommandLine parsed = ParseCommandLine(
        {"--series", "name\ta 1.jpg\tb.jpg", "-o", "100%/%.exr", "-o", "x.hdr", "--save-curve", "%_%.crv"});
    ASSERT_TRUE(parsed.options) << parsed.sText;
    EXPECT_EQ((Arguments{"a 1.jpg", "b.jpg"}), parsed.options->vsImages);
    EXPECT_EQ("100%/name.exr", parsed.options->vOutputs[0].sPath);
    EXPECT_EQ("x.hdr", parsed.options->vOutputs[1].sPath);
    EXPECT_EQ("name_name.crv", parsed.options->sSaveCurve);
    EXPECT_EQ("name\ta 1.jpg\tb.jpg", SeriesLine("name", parsed.options->vsImages));
    EXPECT_FALSE(SeriesLine("name", {"a\n.jpg"}));
    EXPECT_FALSE(SeriesLine("na\tme", {"a.jpg"}));

    const ParsedCommandLine plain = ParseCommandLine({"a.jpg", "-o", "%.exr"});
    ASSERT_TRUE(plain.options);
    EXPECT_EQ("%.exr", plain.options->vOutputs[0].sPath) << "without a series a % is a %";
}

TEST(Options, Group)
{
    const ParsedCommandLine parsed =
        ParseCommandLine({"--group", "day 1", "-o", "o/%.exr", "--gap=2.5", "--aperture", "8"});
    ASSERT_TRUE(parsed.options) << parsed.sText;
    EXPECT_EQ("day 1", parsed.options->sGroup);
    EXPECT_EQ(2.5, parsed.options->dGap);
    EXPECT_FALSE(parsed.options->bList);
    const Options one = OptionsForSeries(*parsed.options, "n", {"x.jpg"});
    EXPECT_EQ("o/n.exr", one.vOutputs[0].sPath);
    EXPECT_EQ(Arguments{"x.jpg"}, one.vsImages);
    EXPECT_EQ("", one.sGroup);

    const ParsedCommandLine list = ParseCommandLine({"--list", "--group=d"});
    ASSERT_TRUE(list.options) << list.sText;
    EXPECT_TRUE(list.options->bList);
    EXPECT_EQ(5, list.options->dGap);
}

TEST(Options, WhatIsWrongIsNamed)
{
    const struct {
        Arguments arguments;
        const char* text;
    } cases[] = {
        {{}, "No image"},
        {{"-o", "x.exr"}, "No image"},
        {{"a.jpg"}, "No output"},
        {{"a.jpg", "-o"}, "--output: a value is missing"},
        {{"a.jpg", "--output"}, "--output: a value is missing"},
        {{"a.jpg", "-o", ""}, "empty"},
        {{"a.jpg", "-o", "x.png7"}, "x.png7"},
        {{"a.jpg", "-o", "folder.exr/x"}, "folder.exr/x"},
        {{"a.jpg", "-o", "x.exr", "--format", "bmp7"}, "bmp7"},
        {{"a.jpg", "-o", "x.exr", "-o", "y.hdr", "--format", "hdr"}, "single output"},
        {{"a.jpg", "-o", "x.exr", "--shutter", "1/0"}, "\"1/0\""},
        {{"a.jpg", "-o", "x.exr", "--shutter", "0"}, "\"0\""},
        {{"a.jpg", "-o", "x.exr", "--shutter", "-1"}, "\"-1\""},
        {{"a.jpg", "-o", "x.exr", "--shutter", "1e60"}, "\"1e60\""},
        {{"a.jpg", "-o", "x.exr", "--shutter", ""}, "missing"},
        {{"a.jpg", "-o", "x.exr", "--shutter", "1,,"}, "\"\""},
        {{"a.jpg", "-o", "x.exr", "--shutter", "1,"}, "missing"},
        {{"a.jpg", "-o", "x.exr", "--aperture", "nan"}, "\"nan\""},
        {{"a.jpg", "b.jpg", "c.jpg", "-o", "x.exr", "--aperture", "8,11"}, "2 values for 3 images"},
        {{"a.jpg", "-o", "x.exr", "--keep-work"}, "--work-dir"},
        {{"a.jpg", "-o", "x.tif", "--depth", "16"}, "\"16\""},
        {{"a.jpg", "-o", "x.jpg", "--exposure", "5.1"}, "from -5 to 5"},
        {{"a.jpg", "-o", "x.jpg", "--exposure", "nan"}, "\"nan\""},
        {{"a.jpg", "-o", "x.jpg", "--gamma", "0.9"}, "from 1 to 3"},
        {{"a.jpg", "-o", "x.jpg", "--quality", "101"}, "from 0 to 100"},
        {{"a.jpg", "-o", "x.jpg", "--quality", "9.5"}, "whole"},
        {{"a.jpg", "-o", "x.tif", "--compression", "zip"}, "\"zip\""},
        {{"a.jpg", "-o", "x.exr", "--nosuch"}, "--nosuch"},
        {{"a.jpg", "-o", "x.exr", "--quiet=1"}, "--quiet"},
        {{"a.jpg", "-o", "x.exr", "-x"}, "-x"},
        {{"--group", "", "-o", "%.exr"}, "empty"},
        {{"--group", "d"}, "No output"},
        {{"--group", "d", "a.jpg", "-o", "%.exr"}, "exclude"},
        {{"--group", "d", "--series", "n\ta", "-o", "%.exr"}, "exclude"},
        {{"--group", "d", "-o", "x.exr"}, "x.exr"},
        {{"--group", "d", "-o", "%/x.exr"}, "%/x.exr"},
        {{"--group", "d", "-o", "%.exr", "--save-curve", "x.crv"}, "x.crv"},
        {{"--group", "d", "-o", "%.exr", "--shutter", "1,2"}, "one value"},
        {{"--group", "d", "-o", "%"}, "%"},
        {{"--group", "d", "-o", "%.exr", "--gap", "-1"}, "from 0"},
        {{"--group", "d", "--list", "-o", "%.exr"}, "--output"},
        {{"a.jpg", "--list"}, "--list goes with"},
        {{"a.jpg", "-o", "x.exr", "--gap", "1"}, "--gap goes with"},
        {{"--series", "name", "-o", "%.exr"}, "\"name\""},
        {{"--series", "name\ta\t\tb", "-o", "%.exr"}, "--list"},
        {{"--series", "name\ta\tb", "-o", "%.exr", "--shutter", "1,2,3"}, "3 values for 2"},
        {{"a.jpg", "-o", "x.exr", "-f", "--skip-existing"}, "--skip-existing"},
    };
    for (const auto& c : cases) {
        const ParsedCommandLine parsed = ParseCommandLine(c.arguments);
        SCOPED_TRACE(parsed.sText);
        EXPECT_FALSE(parsed.options);
        EXPECT_EQ(ExitCode::Usage, parsed.code);
        EXPECT_NE(std::string::npos, parsed.sText.find(c.text)) << c.text;
    }
}

TEST(Options, TextsAreNoErrors)
{
    for (const char* szOption : {"-h", "--help", "-V", "--version"}) {
        SCOPED_TRACE(szOption);
        const ParsedCommandLine parsed = ParseCommandLine({szOption, "--nosuch"});
        EXPECT_FALSE(parsed.options);
        EXPECT_EQ(ExitCode::Done, parsed.code);
        EXPECT_EQ('\n', parsed.sText.back());
    }
}

TEST(Options, HelpNamesEveryOptionInShortLines)
{
    const std::string sHelp = HelpText();
    for (const char* szOption :
         {"-o, --output",    "--format",      "--depth",      "--curve",    "--exposure",   "--gamma",
          "--quality",       "--compression", "--save-curve", "--shutter",  "--aperture",   "--group",
          "--list",          "--gap",         "--series",     "--work-dir", "--keep-work",  "-f, --force",
          "--skip-existing", "--quiet",       "--verbose",    "-h, --help", "-V, --version"})
        EXPECT_NE(std::string::npos, sHelp.find(szOption)) << szOption;
    std::size_t nStart = 0;
    for (std::size_t nEnd = 0; (nEnd = sHelp.find('\n', nStart)) != std::string::npos; nStart = nEnd + 1)
        EXPECT_LE(nEnd - nStart, 80U) << sHelp.substr(nStart, nEnd - nStart);
}
