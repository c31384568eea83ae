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

std::string WithAttributes(int nAttributes)
{
    std::string sText = "<a";
    for (int i = 0; i < nAttributes; ++i)
        sText += " a" + std::to_string(i) + "=''";
    return sText + "/>";
}

} // namespace

TEST(DocumentLimits, RefusesWhatTheLibraryCannotTake)
{
    const std::string sDeep = "too many levels", sCut = "markup without an end",
                      sTag = "a tag without an end", sOpen = "an element without an end",
                      sReference = "a broken character reference", sDeclaration = "a broken declaration",
                      sStray = "an end without its element";
    const struct {
        const char* name;
        std::string text, reason;
    } cases[] = {
        {"empty", "", ""},
        {"no XML", "hello", ""}, // the library's to say
        {"100 levels", Nested(100), ""},
        {"101 levels", Nested(101), sDeep},
        {"100,000 levels", Nested(100000), sDeep},
        {"never closed", Repeated("<a>", 100000), sDeep},
        {"many siblings", "<a>" + Repeated("<b></b><c/>", 5000) + "</a>", ""},
        {"the largest", "<a>" + std::string(MAX_DOCUMENT_BYTES - 7, 'x') + "</a>", ""},
        {"one byte more", "<a>" + std::string(MAX_DOCUMENT_BYTES - 6, 'x') + "</a>",
         "larger than a megabyte"},
        {"1000 attributes", WithAttributes(1000), ""},
        {"1001 attributes", WithAttributes(1001), "too many attributes"},

        // Ends of elements that are none.
        {"in a comment", Nested(101, "<!--</a>-->"), sDeep},
        {"in a comment with dashes", Nested(101, "<!-->--</a>-->"), sDeep},
        {"in a raw text", Nested(101, "<![CDATA[</a>]]>"), sDeep},
        {"in a value", Nested(101, "<b c='</a>'/>"), sDeep},
        {"in a value with the other quote", Nested(101, "<b c=\"'</a>\"/>"), sDeep},
        {"in a value in place of an empty tag", Nested(101, "<b c='/>'/>"), sDeep},
        {"in a reference", Nested(101, "&#x</a>x41;"), sReference},
        {"in a reference in a value", Nested(50, "<b c='&#x'/></a>x41;'/>"), sReference},
        {"in a declaration", Nested(101, "<?xml version='></a>'?>"), sDeclaration},
        {"in a declaration at the start", "<?xml version='?><!--'?>" + Nested(101) + "-->", sDeclaration},
        {"words that look like names", "<?xml a=\"b version='\"?><!--'?>" + Nested(101) + "-->",
         sDeclaration},
        {"equal signs in values", "<?xml a=\"version='\" b='?><!--'?>" + Nested(101) + "-->", sDeclaration},
        {"in something else", Nested(101, "<!b </a>"), sDeep},

        {"declaration", "\xEF\xBB\xBF<?xml version=\"1.0\"  encoding = 'UTF-8'\tstandalone='no' ?><a/>", ""},
        {"declaration in capitals", "<?XML version='1.0'?><a/>", ""},
        {"declaration without a question mark", "<?xml version='1.0'><a/>", sDeclaration},
        {"declaration with unlike quotes", "<?xml version='1.0\"?><a/>", sDeclaration},
        {"second declaration", "<?xml?><?xml?><a/>", sDeclaration},
        {"endless declaration", "<?xml version='1.0'", sDeclaration},
        {"comment", "<!-- &#x </b> ' --><a/>", ""},
        {"endless comment", "<!-- <a/> --", sCut},
        {"comment of one dash", "<!--->", sCut},
        {"endless raw text", "<a><![CDATA[ ]]</a>", sCut},
        {"endless something", "<!DOCTYPE a", sCut},
        {"entity bomb", "<!DOCTYPE a [<!ENTITY b \"&c;&c;\"><!ENTITY c \"xx\">]><a>&b;</a>", ""},
        {"endless tag", "<a", sTag},
        {"endless value", "<a b='>", sTag},
        {"endless element", "<a><b></b>", sOpen},
        {"stray end", "<a/></a>", sStray},
        {"endless end", "<a></a", sCut},
        {"lone bracket", "<a>x</a><", sCut},

        {"references", "<a b='&#xE9;&#233;&#x10FFFF;'>&#x1;&amp;&foo;&</a>", ""},
        {"reference to null", "<a>&#0;</a>", sReference},
        {"reference to null in a value", "<a b='&#x00;'/>", sReference},
        {"reference to a surrogate", "<a>&#xD800;</a>", sReference},
        {"reference beyond Unicode", "<a>&#x110000;</a>", sReference},
        {"large reference", "<a>&#99999999999;</a>", sReference},
        {"reference without digits", "<a>&#;</a>", sReference},
        {"negative reference", "<a>&#-5;</a>", sReference},
        {"reference at the end", "&#x4", sReference},

        {"null character", std::string("<a>\0</a>", 8), "a null character"},
        {"UTF-16", std::string("\xFF\xFE<\0a\0/\0>\0", 10), "a null character"},
        {"Latin-1 before a quote", "<a b='\xE9'/>", "not UTF-8"},
        {"cut character at the end", "<a/>\xE5\x86", "not UTF-8"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(c.reason, RefusalReason(c.text)) << c.name;
}
