// Trees in memory: kinds of node, paths, typed values.
#include "xml/XmlNode.h"

#include "Util/Utf8.h"
#include "tests/support/FailureRecorder.h"
#include "xml/DocumentLimits.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <locale>
#include <string>

using namespace LS::Xml;
using Node = LS::Util::Handle<XmlNode>;
using LS::Tests::FailureRecorder;

namespace {

Node Named(const Node& node, const std::wstring& sName, const std::wstring& sValue = L"")
{
    node->SetName(sName);
    node->SetValue(sValue);
    return node;
}

Node Element(const std::wstring& sName, const std::wstring& sValue = L"")
{
    return Named(XmlNode::CreateElement(), sName, sValue);
}

Node Attribute(const std::wstring& sName, const std::wstring& sValue = L"")
{
    return Named(XmlNode::CreateAttribute(), sName, sValue);
}

/// The children's names, one letter each.
std::wstring Names(const Node& node)
{
    std::wstring sNames;
    for (unsigned i = 0; i < node->GetChildCount(); ++i)
        sNames += node->GetChild(i)->GetName();
    return sNames;
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
    for (int i = 1; i < nLevels; ++i) {
        const Node parent = Element(L"e");
        parent->AddChild(top);
        top = parent;
    }
    return top;
}

/// Numbers as 1.234,5 in all streams of a scope that don't ask for another locale.
class CommaLocale {
public:
    CommaLocale() { std::locale::global(std::locale(std::locale::classic(), new Punctuation)); }
    CommaLocale(const CommaLocale&) = delete;
    CommaLocale& operator=(const CommaLocale&) = delete;
    ~CommaLocale() { std::locale::global(std::locale::classic()); }

private:
    struct Punctuation : std::numpunct<wchar_t> {
        wchar_t do_decimal_point() const override { return L','; }
        wchar_t do_thousands_sep() const override { return L'.'; }
        std::string do_grouping() const override { return "\3"; }
    };
};

} // namespace

TEST(XmlNode, PathsTakeTheFirstMatch)
{
    const Node root = Element(L"root");
    ASSERT_TRUE(root->Parse(L"<any x='attribute'><A><B>1</B></A><A><B>2</B><C>3</C></A><x>element</x>"
                            L"<leaf/><e-1_\u00E9 v='w'/></any>"));
    const struct {
        const wchar_t* path;
        const wchar_t* value;
    } cases[] = {
        {L"A/B", L"1"},      {L"A/C", L"none"},       {L"x", L"attribute"},
        {L"x/y", L"none"},   {L"a/B", L"none"},       {L"A", L""},
        {L"A/", L""},        {L"/A", L"none"},        {L"", L"none"},
        {L"A/B/C", L"none"}, {L"any/A", L"none"},     {L"leaf", L""},
        {L"leaf/", L""},     {L"e-1_\u00E9/v", L"w"}, {L"/", L"none"},
        {L"A//B", L"none"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.path);
        EXPECT_EQ(c.value, GetString(c.path, L"none", root));
        EXPECT_EQ(GetString(c.path, L"none", root) != L"none", static_cast<bool>(root->GetChild(c.path)));
    }
    EXPECT_EQ(L"any", root->GetName());
    EXPECT_EQ(L"none", GetString(L"A", L"none", Node()));
    EXPECT_EQ(L"none", GetString(L"A", L"none", Attribute(L"A", L"x")));
}

TEST(XmlNode, FirstOfAttributeAndElementOfOneName)
{
    const struct {
        Node first, second;
        const wchar_t* value;
    } cases[] = {
        {Attribute(L"n", L"attribute"), Element(L"n", L"element"), L"attribute"},
        {Element(L"n", L"element"), Attribute(L"n", L"attribute"), L"element"},
    };
    for (const auto& c : cases) {
        const Node root = Element(L"r");
        EXPECT_TRUE(root->AddChild(c.first) && root->AddChild(c.second));
        EXPECT_EQ(c.value, GetString(L"n", L"", root));
    }
}

TEST(XmlNode, ChildrenComeAndGo)
{
    const Node root = Element(L"r"), a = Attribute(L"a"), b = Element(L"b"), stranger = Element(L"a");
    EXPECT_TRUE(root->AddChild(a));
    EXPECT_FALSE(root->AddChild(a)) << "already a child";
    EXPECT_TRUE(root->AddChild(b));
    EXPECT_TRUE(root->InsertChild(0, Element(L"c")));
    EXPECT_TRUE(root->InsertChild(3, Element(L"d")));
    EXPECT_FALSE(root->InsertChild(5, Element(L"e")));
    EXPECT_TRUE(root->InsertChild(1, b)) << "no test for a second time";
    EXPECT_EQ(L"cbabd", Names(root));

    EXPECT_FALSE(root->RemoveChild(stranger)) << "not that very node";
    EXPECT_TRUE(root->RemoveChild(b));
    EXPECT_EQ(L"cabd", Names(root));
    EXPECT_FALSE(root->RemoveChild(4));
    EXPECT_TRUE(root->RemoveChild(3));
    EXPECT_FALSE(root->RemoveChild(L"d"));
    EXPECT_FALSE(root->RemoveChild(L"b/x"));
    EXPECT_TRUE(root->RemoveChild(L"c"));
    EXPECT_EQ(L"ab", Names(root));
    EXPECT_FALSE(root->GetChild(2));
    EXPECT_EQ(b.get(), root->GetChild(1).get());

    EXPECT_EQ(0, a->IsElement());
    EXPECT_EQ(1, b->IsElement());
    EXPECT_FALSE(a->AddChild(b) || a->InsertChild(0, b) || a->RemoveChild(0) || a->RemoveChild(L"b"));
    EXPECT_FALSE(a->SetFileName(L"x") || a->Save() || a->Load() || a->Parse(L"<x/>"));
    EXPECT_EQ(L"", a->GetFileName());
    EXPECT_EQ("", a->ToString());
    EXPECT_FALSE(root->Reserved(L""));

    root->SetFileName(L"file");
    root->SetValue(L"value");
    EXPECT_TRUE(root->Clear());
    EXPECT_EQ(0U, root->GetChildCount());
    EXPECT_EQ(L"rvaluefile", root->GetName() + root->GetValue() + root->GetFileName());
}

TEST(XmlNode, SetMakesMissingLevelsAndNeverReplaces)
{
    const Node root = Element(L"r");
    ASSERT_TRUE(SetInt(L"A/B/C", 5, root));
    EXPECT_EQ(5, GetInt(L"A/B/C", 0, root));
    EXPECT_EQ(1, root->GetChild(L"A/B")->IsElement());
    EXPECT_EQ(0, root->GetChild(L"A/B/C")->IsElement());

    EXPECT_TRUE(SetString(L"A/B/C", L"later", root));
    EXPECT_EQ(2U, root->GetChild(L"A/B")->GetChildCount());
    EXPECT_EQ(5, GetInt(L"A/B/C", 0, root));

    EXPECT_EQ(1, AddElement(L"A/E", L"text", root)->IsElement());
    EXPECT_FALSE(SetInt(L"A/B/C/D", 1, root)) << "C is a leaf";
    EXPECT_FALSE(SetInt(L"A/B/C/D/E", 1, root));
    EXPECT_FALSE(SetInt(L"x", 1, Attribute(L"leaf")));
    EXPECT_EQ("<r>\n    <A>\n        <B C=\"later\" />\n        <E>text</E>\n    </A>\n</r>\n", Body(root));
}

TEST(XmlNode, NumbersAreRead)
{
    const struct {
        const wchar_t* text;
        int integer; // with the default -1
        double real;
    } cases[] = {
        {L"95", 95, 95},  {L"95x", 95, 95},   {L" 7", 7, 7},       {L"-12", -12, -12},
        {L"+3", 3, 3},    {L"6.5", 6, 6.5},   {L"6,5", 6, 6},      {L"1e3", 1, 1000},
        {L"0x10", 0, 0},  {L"", -1, 0},       {L"letters", -1, 0}, {L"x95", -1, 0},
        {L"-", -1, 0},    {L"nan", -1, 0},    {L"inf", -1, 0},     {L"99999999999", -1, 99999999999.0},
        {L"1e999", 1, 0}, {L"\u0665", -1, 0}, {L"010", 10, 10},
    };
    const auto check = [&cases] {
        for (const auto& c : cases) {
            SCOPED_TRACE(c.text);
            const Node root = Element(L"r");
            SetString(L"n", c.text, root);
            EXPECT_EQ(c.integer, GetInt(L"n", -1, root));
            EXPECT_EQ(c.real, GetDouble(L"n", root));
        }
    };
    check();
    {
        const CommaLocale comma;
        check();
    }
    EXPECT_EQ(4, GetInt(L"n", 4, Element(L"empty")));
    EXPECT_EQ(0.0, GetDouble(L"n", Element(L"empty")));
}

TEST(XmlNode, NumbersAreWritten)
{
    const CommaLocale comma;
    const Node root = Element(L"r");
    const struct {
        Node node;
        const wchar_t* text;
    } cases[] = {
        {SetDouble(L"n", 6.0, root), L"6"},
        {SetDouble(L"n", 0.5, root), L"0.5"},
        {SetDouble(L"n", 1234567.0, root), L"1.23457e+06"},
        {SetDouble(L"n", -0.001, root), L"-0.001"},
        {SetInt(L"n", 1234567, root), L"1234567"},
        {SetInt(L"n", std::numeric_limits<int>::min(), root), L"-2147483648"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(c.text, c.node->GetValue());
}

TEST(XmlNode, DocumentsOfAllKindsOfContent)
{
    const struct {
        const wchar_t* text;
        const char* body;
    } cases[] = {
        {L"<r/>", "<r />\n"},
        {L"<!-- c --><r>  a   b </r>", "<r>a b</r>\n"},
        {L"<r a=' a   b '/>", "<r a=\" a   b \" />\n"},
        {L"<r>x<b/>y</r>", "<r>y\n    <b />\n</r>\n"},
        {L"<r><![CDATA[<&> ]]></r>", "<r>&lt;&amp;&gt; </r>\n"},
        {L"<r><!-- > <b> --><?pi?><!X><b/></r>", "<r>\n    <b />\n</r>\n"},
        {L"<r a='1'/><second/>", "<r a=\"1\" />\n"},
        {L"<r a='&lt;&quot;&amp;&#xE9;&#233;'/>", "<r a='&lt;&quot;&amp;\xC3\xA9\xC3\xA9' />\n"},
        {L"<r a='1\r\n2\r3'/>", "<r a=\"1&#x0A;2&#x0A;3\" />\n"},
        {L"\uFEFF<?xml version='1.0' encoding='latin1' standalone=\"yes\"?>\n<r/>", "<r />\n"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.body);
        const Node root = XmlNode::CreateElement();
        EXPECT_TRUE(root->Parse(c.text));
        EXPECT_EQ(c.body, Body(root));
    }
    EXPECT_EQ("<?xml version=\"1.0\" encoding=\"UTF-8\" ?>\n<r />\n", Element(L"r")->ToString());
    EXPECT_EQ("", Element(L"")->ToString());
}

TEST(XmlNode, AnyValueSurvives)
{
    const FailureRecorder log;
    const std::wstring sValues[] = {
        L"caf\u00E9 \u5199\u771F \U0001F4F7",
        L"<a b='c'>&\"</a>",
        L"&amp;#x41;",
        L"&#x41;",
        L"&#x",
        L"'&#x\"<>;&#x;",
        L"&#65; &unknown; ]]> <!-- --> <?x?>",
        L"line\nline\r\n\ttab\x01",
        L" blanks  kept ",
        L"C:\\100%s\\%n",
        std::wstring(70000, L'x'),
    };
    for (const std::wstring& sValue : sValues) {
        SCOPED_TRACE(LS::Util::ToUtf8(sValue.substr(0, 40)));
        const Node root = Element(L"r"), read = XmlNode::CreateElement();
        SetString(L"attribute", sValue, root);
        AddElement(L"element", sValue, root);
        EXPECT_TRUE(read->Parse(LS::Util::FromUtf8(root->ToString())));
        EXPECT_EQ(sValue, GetString(L"attribute", L"", read));
        if (sValue.find(L' ') == sValue.npos) { // the library condenses white space in elements
            EXPECT_EQ(sValue, GetString(L"element", L"", read));
        }
    }
    EXPECT_TRUE(log.Lines().empty());

    const Node root = Element(L"r"), read = XmlNode::CreateElement();
    SetString(L"a", {L'a', L'\0', L'b', wchar_t{0xD800}}, root);
    EXPECT_TRUE(read->Parse(LS::Util::FromUtf8(root->ToString())));
    EXPECT_EQ(L"a\uFFFDb\uFFFD", GetString(L"a", L"", read)) << "what no document can hold";
}

TEST(XmlNode, LoadAddsAndTellsOfFailures)
{
    const FailureRecorder log;
    const Node root = Element(L"old", L"text");
    SetInt(L"n", 1, root);
    EXPECT_FALSE(root->Parse(L"<new n='2'><b></c></new>"));
    EXPECT_EQ("<old n=\"1\">text</old>\n", Body(root)) << "as it was";
    EXPECT_EQ(1U, log.Lines().size());

    EXPECT_TRUE(root->Parse(L"<new n='2' m='3'/>"));
    EXPECT_EQ(3U, root->GetChildCount());
    EXPECT_EQ(1, GetInt(L"n", 0, root));
    EXPECT_EQ(3, GetInt(L"m", 0, root));
    EXPECT_EQ(L"newtext", root->GetName() + root->GetValue());
}

TEST(XmlNode, DeepTreesDontOverflowTheStack)
{
    const FailureRecorder log;
    Node root = Chain(1000000);
    EXPECT_EQ("", root->ToString());
    root->SetFileName(L"/nowhere");
    EXPECT_FALSE(root->Save());
    std::wstring sPath = L"e";
    for (int i = 0; i < 100000; ++i)
        sPath += L"/e";
    EXPECT_TRUE(root->GetChild(sPath));

    const Node kept = root->GetChild(L"e/e/e");
    root = Node();
    EXPECT_TRUE(kept->GetChild(sPath)) << "somebody still holds it";

    const Node built = Element(L"r");
    EXPECT_TRUE(SetString(sPath, L"bottom", built));
    EXPECT_EQ(L"bottom", GetString(sPath, L"", built));

    EXPECT_NE("", Chain(MAX_LEVELS)->ToString());
    EXPECT_EQ("", Chain(MAX_LEVELS + 1)->ToString());
}

TEST(XmlNodeDeathTest, NullHandlesAreProgrammingErrors)
{
    const Node root = Element(L"r"), null;
    EXPECT_DEATH(root->AddChild(null), "assertion failed: node");
    EXPECT_DEATH(root->InsertChild(0, null), "assertion failed: node");
    EXPECT_DEATH(root->RemoveChild(null), "assertion failed: node");
    EXPECT_DEATH(SetInt(L"a/b", 1, null), "assertion failed: root");
    EXPECT_DEATH(AddElement(L"a", L"", null), "assertion failed: root");
}
