// Which texts the XML library never sees.
#include "xml/DocumentLimits.h"

#include <gtest/gtest.h>

#include <string>

using namespace LS::Xml;

namespace {

std::string Repeated(const std::string& sPiece, int nTimes)
{
    std::string sText;
    for (int i = 0; i < nTimes; ++i)
        sText += sPiece;
    return sText;
}

std::string Nested(int nLevels, const std::string& sInEach = "")
{
    return Repeated("<a>" + sInEach, nLevels) + Repeated("</a>", nLevels);
}

} // namespace

TEST(DocumentLimits, RefusesWhatTheLibraryCannotTake)
{
    const std::string sDeep = "too many levels", sCut = "markup without an end",
                      sTag = "a tag without an end", sOpen = "an element without an end",
                      sReference = "a broken character reference", sDeclaration = "a broken declaration",
                      sStray = "an end without its element";
    const struct {
        std::string text, reason;
    } cases[] = {
        {"hello", ""}, // the library's to say
        {Nested(100), ""},
        {Nested(101), sDeep},
        {Repeated("<a>", 100000), sDeep},
        {"<a>" + std::string(MAX_DOCUMENT_BYTES - 7, 'x') + "</a>", ""},
        {"<a>" + std::string(MAX_DOCUMENT_BYTES - 6, 'x') + "</a>", "larger than a megabyte"},
        {"<a" + Repeated(" b=''", 1000) + "/>", ""},
        {"<a" + Repeated(" b=''", 1001) + "/>", "too many attributes"},

        // Ends of elements that are none.
        {Nested(101, "<!-->--</a>-->"), sDeep},
        {Nested(101, "<![CDATA[</a>]]>"), sDeep},
        {Nested(101, "<b c=\"'</a>\"/>"), sDeep},
        {Nested(101, "&#x</a>x41;"), sReference},
        {Nested(50, "<b c='&#x'/></a>x41;'/>"), sReference},
        {"<?xml version='?><!--'?>" + Nested(101) + "-->", sDeclaration},
        {"<?xml a=\"version='\" b='?><!--'?>" + Nested(101) + "-->", sDeclaration},
        {Nested(101, "<!b </a>"), sDeep},

        {"\xEF\xBB\xBF<?xml version=\"1.0\"  encoding = 'UTF-8'\tstandalone='no' ?><a/>", ""},
        {"<?XML version='1.0'><a/>", sDeclaration},
        {"<?xml version='1.0\"?><a/>", sDeclaration},
        {"<?xml?><?xml?><a/>", sDeclaration},
        {"<?xml version='1.0'", sDeclaration},
        {"<!-- &#x </b> ' --><a/>", ""},
        {"<!--->", sCut},
        {"<a><![CDATA[ ]]</a>", sCut},
        {"<a b='>", sTag},
        {"<a", sTag},
        {"<a><b></b>", sOpen},
        {"<a/></a>", sStray},
        {"<a></a", sCut},

        {"<a b='&#xE9;&#233;&#x10FFFF;'>&#x1;&amp;&foo;&</a>", ""},
        {"<a>&#0;</a>", sReference},
        {"<a>&#xD800;</a>", sReference},
        {"<a>&#xDFFF;</a>", sReference},
        {"<a>&#x110000;</a>", sReference},
        {"<a>&#;</a>", sReference},
        {"&#x4", sReference},

        {std::string("<a>\0</a>", 8), "a null character"},
        {"<a b='\xE9'/>", "not UTF-8"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(c.reason, RefusalReason(c.text)) << c.text.substr(0, 80);
}
