// The command line as a value.
#include "cli/Options.h"
#include "tests/cli/ProgramRun.h"

#include <stdexcept>

using namespace LS::Tests;

namespace {

/// The options of a command line that is right.
Options Parsed(const Arguments& arguments)
{
    const ParsedCommandLine parsed = ParseCommandLine(arguments);
    return parsed.options ? *parsed.options : throw std::runtime_error(parsed.sText);
}

} // namespace

TEST(Options, Series)
{
    const Options options = Parsed(
        {"--series", "name\ta 1.jpg\tb.jpg", "-o", "100%/%.exr", "-o", "x.hdr", "--save-curve", "%_%.crv"});
    EXPECT_EQ((Arguments{"a 1.jpg", "b.jpg"}), options.vsImages);
    EXPECT_EQ("100%/name.exr", options.vOutputs[0].sPath);
    EXPECT_EQ("x.hdr", options.vOutputs[1].sPath);
    EXPECT_EQ("name_name.crv", options.sSaveCurve);
    EXPECT_EQ("name\ta 1.jpg\tb.jpg", SeriesLine("name", options.vsImages));
    EXPECT_FALSE(SeriesLine("name", {"a\n.jpg"}));
    EXPECT_FALSE(SeriesLine("na\tme", {"a.jpg"}));
    EXPECT_EQ("%.exr", Parsed({"a.jpg", "-o", "%.exr"}).vOutputs[0].sPath) << "without a series a % is a %";
}

TEST(Options, WhatIsWrongIsNamed)
{
    const struct {
        Arguments arguments;
        const char* text;
    } cases[] = {
        {{"a.jpg"}, "No output"},
        {{"a.jpg", "-o"}, "--output: a value is missing"},
        {{"a.jpg", "-o", "folder.exr/x"}, "folder.exr/x"},
        {{"a.jpg", "-o", "x.exr", "--format", "bmp7"}, "bmp7"},
        {{"a.jpg", "-o", "x.exr", "-o", "y.hdr", "--format", "hdr"}, "single output"},
        {{"a.jpg", "-o", "x.exr", "--shutter", "1/0"}, "\"1/0\""},
        {{"a.jpg", "-o", "x.exr", "--shutter", "1,"}, "missing"},
        {{"a.jpg", "b.jpg", "c.jpg", "-o", "x.exr", "--aperture", "8,11"}, "2 values for 3 images"},
        {{"a.jpg", "-o", "x.exr", "--keep-work"}, "--work-dir"},
        {{"a.jpg", "-o", "x.tif", "--depth", "16"}, "\"16\""},
        {{"a.jpg", "-o", "x.jpg", "--exposure", "5.1"}, "from -5 to 5"},
        {{"a.jpg", "-o", "x.jpg", "--gamma", "nan"}, "\"nan\""},
        {{"a.jpg", "-o", "x.jpg", "--quality", "9.5"}, "whole"},
        {{"a.jpg", "-o", "x.exr", "-f", "--skip-existing"}, "--skip-existing"},
        {{"a.jpg", "--list"}, "--list goes with"},
        {{"--group", "d", "a.jpg", "-o", "%.exr"}, "exclude"},
        {{"--group", "d", "-o", "%/x.exr"}, "%/x.exr"},
        {{"--group", "d", "-o", "%.exr", "--save-curve", "x.crv"}, "x.crv"},
        {{"--group", "d", "-o", "%.exr", "--shutter", "1,2"}, "one value"},
        {{"--series", "name\ta\t\tb", "-o", "%.exr"}, "--list"},
    };
    for (const auto& c : cases) {
        const ParsedCommandLine parsed = ParseCommandLine(c.arguments);
        EXPECT_FALSE(parsed.options) << c.text;
        EXPECT_EQ(ExitCode::Usage, parsed.code);
        ExpectHas(c.text, parsed.sText);
    }
}
