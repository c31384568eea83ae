// Trees in memory: kinds of node, paths, typed values.
#include "xml/XmlNode.h"

#include "Util/Utf8.h"
#include "xml/DocumentLimits.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <locale>
#include <string>

using namespace LS::Xml;
using Node = LS::Util::Handle<XmlNode>;

namespace {

Node Element(const std::wstring& sName)
{
    const Node node = XmlNode::CreateElement();
    node->SetName(sName);
    return node;
}

/// The document without its declaration.
std::string Body(const Node& root)
{
    const std::string sText = root->ToString();
    return sText.substr(std::min(sText.find('\n') + 1, sText.size()));
}

/// A chain of elements, made from the bottom.
Node Chain(int nLevels)
{
    Node top = Element(L"e");
    while (--nLevels > 0) {
        const Node parent = Element(L"e");
        parent->AddChild(top);
        top = parent;
    }
    return top;
}

/// Numbers as 1.234,5 in all streams that don't ask for another locale.
struct CommaPunctuation : std::numpunct<wchar_t> {
    wchar_t do_decimal_point() const override { return L','; }
    wchar_t do_thousands_sep() const override { return L'.'; }
    std::string do_grouping() const override { return "\3"; }
};

} // namespace

TEST(XmlNode, PathsTakeTheFirstMatch)
{
    const Node root = Element(L"root");
    ASSERT_TRUE(root->Parse(L"<any x='attribute'><A><B>1</B></A><A><B>2</B><C>3</C></A><x>element</x>"
                            L"<e-1_\u00E9 v='w'/></any>"));
    const struct {
        const wchar_t* path;
        const wchar_t* value;
    } cases[] = {
        {L"A/B", L"1"},     {L"A/C", L"none"},       {L"x", L"attribute"}, {L"x/y", L"none"},
        {L"A/", L""},       {L"/A", L"none"},        {L"", L"none"},       {L"A/B/C", L"none"},
        {L"A//B", L"none"}, {L"e-1_\u00E9/v", L"w"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.path);
        EXPECT_EQ(c.value, GetString(c.path, L"none", root));
    }
    EXPECT_EQ(L"any", root->GetName());
    EXPECT_EQ(L"none", GetString(L"A", L"none", Node()));
    EXPECT_EQ(L"none", GetString(L"A", L"none", root->GetChild(L"x"))) << "a leaf";
}

TEST(XmlNode, ALeafIsNoDocument)
{
    const Node root = Element(L"r"), leaf = SetInt(L"l", 1, root);
    EXPECT_FALSE(leaf->AddChild(Element(L"a")) || leaf->SetFileName(L"x") || leaf->Save() || leaf->Load() ||
                 leaf->Parse(L"<x/>"));
    EXPECT_EQ("", leaf->ToString());
    root->SetValue(L"value");
    EXPECT_TRUE(root->Clear());
    EXPECT_EQ("<r>value</r>\n", Body(root));
}

TEST(XmlNode, SetMakesMissingLevelsAndNeverReplaces)
{
    const Node root = Element(L"r");
    EXPECT_TRUE(SetInt(L"A/B/C", 5, root));
    EXPECT_EQ("<r>\n    <A>\n        <B C=\"5\" />\n    </A>\n</r>\n", Body(root));
    EXPECT_TRUE(SetString(L"A/B/C", L"later", root));
    EXPECT_EQ(2U, root->GetChild(L"A/B")->GetChildCount());
    EXPECT_EQ(5, GetInt(L"A/B/C", 0, root));

    EXPECT_EQ(1, AddElement(L"A/E", L"text", root)->IsElement());
    EXPECT_EQ(L"text", GetString(L"A/E", L"", root));
    EXPECT_FALSE(SetInt(L"A/B/C/D", 1, root)) << "C is a leaf";
}

TEST(XmlNode, NumbersInAnyLocale)
{
    const struct {
        const wchar_t* text;
        int integer; // with the default -1
        double real;
    } read[] = {
        {L"95x", 95, 95}, {L" -12", -12, -12}, {L"6.5", 6, 6.5}, {L"6,5", 6, 6},
        {L"", -1, 0},     {L"inf", -1, 0},     {L"1e999", 1, 0}, {L"99999999999", -1, 99999999999.0},
    };
    const std::locale comma(std::locale::classic(), new CommaPunctuation);
    const std::locale before = std::locale::global(comma);
    for (const auto& c : read) {
        SCOPED_TRACE(c.text);
        const Node root = Element(L"r");
        SetString(L"n", c.text, root);
        EXPECT_EQ(c.integer, GetInt(L"n", -1, root));
        EXPECT_EQ(c.real, GetDouble(L"n", root));
    }
    const Node root = Element(L"r");
    EXPECT_EQ(L"6", SetDouble(L"n", 6.0, root)->GetValue());
    EXPECT_EQ(L"-0.001", SetDouble(L"n", -0.001, root)->GetValue());
    EXPECT_EQ(L"1234567", SetInt(L"n", 1234567, root)->GetValue());
    EXPECT_EQ(4, GetInt(L"missing", 4, root));
    std::locale::global(before);
}

TEST(XmlNode, DocumentsOfAllKindsOfContent)
{
    const struct {
        const wchar_t* text;
        const char* body;
    } cases[] = {
        {L"<!-- c --><r>  a   b </r>", "<r>a b</r>\n"},
        {L"<r>x<b/>y</r>", "<r>y\n    <b />\n</r>\n"},
        {L"<r><![CDATA[<&> ]]></r>", "<r>&lt;&amp;&gt; </r>\n"},
        {L"<r><!-- > <b> --><?pi?><!X><b/></r>", "<r>\n    <b />\n</r>\n"},
        {L"<r a='1'/><second/>", "<r a=\"1\" />\n"},
        {L"<r a='1\r\n2\r3'/>", "<r a=\"1&#x0A;2&#x0A;3\" />\n"},
        {L"\uFEFF<?xml version='1.0' encoding='latin1' standalone=\"yes\"?>\n<r/>", "<r />\n"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.body);
        const Node root = XmlNode::CreateElement();
        EXPECT_TRUE(root->Parse(c.text));
        EXPECT_EQ(c.body, Body(root));
    }
    const Node root = Element(L"r");
    root->AddChild(Element(L"")); // skipped
    EXPECT_EQ("<?xml version=\"1.0\" encoding=\"UTF-8\" ?>\n<r />\n", root->ToString());
}

TEST(XmlNode, AnyValueSurvives)
{
    const std::wstring sValue =
        L"  caf\u00E9 \u5199\u771F \U0001F4F7<a b='c'>&\"</a>&amp;#x41;&#x41;&#x'&#x\"<>;"
        L"&#x;&#65; &unknown; ]]> <!-- --> <?x?>line\nline\r\n\ttab\x01  " +
        std::wstring(70000, L'x');
    const Node root = Element(L"r"), read = XmlNode::CreateElement();
    SetString(L"a", sValue, root);
    SetString(L"b", {L'a', L'\0', L'b', wchar_t{0xD800}}, root);
    EXPECT_TRUE(read->Parse(LS::Util::FromUtf8(root->ToString())));
    EXPECT_EQ(sValue, GetString(L"a", L"", read));
    EXPECT_EQ(L"a\uFFFDb\uFFFD", GetString(L"b", L"", read)) << "what no document can hold";
}

TEST(XmlNode, DeepTreesDontOverflowTheStack)
{
    Node root = Chain(1000000);
    EXPECT_EQ("", root->ToString());
    std::wstring sPath = L"e";
    for (int i = 0; i < 100000; ++i)
        sPath += L"/e";
    EXPECT_TRUE(root->GetChild(sPath));

    const Node kept = root->GetChild(L"e/e/e");
    root = Node();
    EXPECT_TRUE(kept->GetChild(sPath)) << "somebody still holds it";
    EXPECT_TRUE(SetString(sPath, L"bottom", Element(L"r")));

    EXPECT_NE("", Chain(MAX_LEVELS)->ToString());
    EXPECT_EQ("", Chain(MAX_LEVELS + 1)->ToString());
}
