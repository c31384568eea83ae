// Paths in a tree, and its document on the disk: what is written when, what is read, and what breaks.
#include "xml/XmlNode.h"
#include "tests/support/FailureRecorder.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

using namespace LS::Tests;
using namespace LS::Xml;
using Node = LS::Util::Handle<XmlNode>;

namespace {

Node At(const std::wstring& sFile)
{
    const Node root = XmlNode::CreateElement();
    root->SetFileName(sFile);
    return root;
}

} // namespace

TEST(XmlNode, PathsTakeTheFirstMatch)
{
    const Node root = XmlNode::CreateElement();
    ASSERT_TRUE(
        root->Parse(L"<any x='attribute'><A><B>1</B></A><A><B>2</B><C>3</C></A><x>element</x></any>"));
    const struct {
        const wchar_t* path;
        const wchar_t* value;
    } cases[] = {
        {L"A/B", L"1"},    {L"A/C", L"none"}, {L"x", L"attribute"},
        {L"x/y", L"none"}, {L"A/", L""},      {L"A//B", L"none"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(c.value, GetString(c.path, L"none", root)) << c.path;
}

TEST(DocumentFile, IsWrittenOnlyAfterAChange)
{
    const TempFolder folder;
    const std::string sFile = folder.File("a.xml"), sSpaced = "<root  >  <Save Type='x'/></root>";
    WriteText(sFile, sSpaced);
    const Node root = At(folder.WideFile("a.xml"));
    ASSERT_TRUE(root->Load());
    root->GetChild(L"Save/Type")->SetValue(L"x");
    EXPECT_TRUE(root->Save());
    EXPECT_EQ(sSpaced, ReadText(sFile));
    root->GetChild(L"Save/Type")->SetValue(L"y");
    EXPECT_TRUE(root->Save());
    EXPECT_EQ(root->ToString(), ReadText(sFile));

    std::filesystem::remove(sFile);
    EXPECT_TRUE(root->Save()) << "nothing left to write";
    EXPECT_TRUE(folder.Names().empty());
}

TEST(DocumentFile, NamesPassThroughTheCodePage)
{
    const FailureRecorder log;
    const TempFolder folder;
    const Node root = At(folder.WideFile("\xC3\xB1.xml"));
    root->SetName(L"r");
    EXPECT_FALSE(root->Save());
    WriteText(folder.File("\xC3\xB1.xml"), "<r/>");
    EXPECT_FALSE(root->Load());
    EXPECT_EQ(2U, log.Lines().size());
}

TEST(DocumentFile, NothingIsWrittenThatCouldNotBeRead)
{
    const TempFolder folder;
    const Node root = At(folder.WideFile("a.xml"));
    const FailureRecorder log;
    root->SetName(L"r");
    std::wstring sPath;
    for (int i = 0; i < 99; ++i)
        sPath += L"e/";
    SetInt(sPath + L"e/n", 1, root);
    EXPECT_FALSE(root->Save()) << "101 levels";
    EXPECT_EQ(1U, log.Lines().size());
    EXPECT_TRUE(folder.Names().empty());

    root->Clear();
    SetInt(sPath + L"n", 1, root);
    EXPECT_TRUE(root->Save()) << "the changes were pending";
    EXPECT_EQ(root->ToString(), ReadText(folder.File("a.xml")));
}

TEST(DocumentFile, OnlySmallDocumentsAreRead)
{
    const TempFolder folder;
    std::string sStarts, sEnds;
    for (int i = 0; i < 65536 / 7; ++i) {
        sStarts += "<a>";
        sEnds += "</a>";
    }
    const struct {
        const char* name;
        std::string text;
        bool read;
    } cases[] = {
        {"declaration", "<?xml version=\"1.0\"?>\n<!-- only -->\n", false},
        {"half a character", "<r a='\xF0", false},
        {"large", "<r>" + std::string(65536 - 6, ' ') + "</r>", false},
        {"100 levels", sStarts.substr(0, 300) + sEnds.substr(0, 400), true},
        {"101 levels", sStarts.substr(0, 303) + sEnds.substr(0, 404), false},
        {"as many as fit", sStarts + sEnds, false},
    };
    for (const auto& c : cases) {
        const FailureRecorder log;
        WriteText(folder.File(c.name), c.text);
        EXPECT_EQ(c.read, At(folder.WideFile(c.name))->Load()) << c.name;
        EXPECT_EQ(c.read ? 0U : 1U, log.Lines().size()) << c.name;
    }
}

TEST(DocumentFile, CutAtAnyByteChangesNothing)
{
    const FailureRecorder log;
    const std::wstring sWhole = L"\uFEFF<?xml version=\"1.0\" encoding=\"latin1\" ?>\r\n"
                                L"<root Text='a&quot;\r\n&#x0A;\r'>\n"
                                L"    <!-- > <b> --><Save Type=\"caf\u00E9 \u5199\" />\n"
                                L"    <Text>x &amp; &#xE9;</Text><?pi?><!X><![CDATA[<raw>]]>\n"
                                L"</root>";
    const Node root = XmlNode::CreateElement();
    root->SetName(L"old");
    const std::string sBefore = root->ToString();
    for (std::size_t i = 0; i < sWhole.size(); ++i) {
        EXPECT_FALSE(root->Parse(sWhole.substr(0, i))) << "cut at " << i;
        EXPECT_EQ(sBefore, root->ToString());
    }
    EXPECT_EQ(sWhole.size(), log.Lines().size());
    EXPECT_TRUE(root->Parse(sWhole));
    EXPECT_EQ("<?xml version=\"1.0\" encoding=\"UTF-8\" ?>\n"
              "<root Text='a&quot;&#x0A;&#x0A;&#x0A;'>&lt;raw&gt;\n"
              "    <Save Type=\"caf\xC3\xA9 \xE5\x86\x99\" />\n"
              "    <Text>x &amp; \xC3\xA9</Text>\n"
              "</root>\n",
              root->ToString());
}

TEST(DocumentFile, AnyValueSurvives)
{
    const std::wstring sValue =
        L"  caf\u00E9 \u5199\u771F \U0001F4F7<a b='c'>&\"</a>&amp;#x41;&#x41;&#x'&#x\"<>;"
        L"&#x;&#65; &unknown; ]]> <!-- --> <?x?>line\nline\r\n\ttab\x01  ";
    const TempFolder folder;
    const std::wstring sFile = folder.WideFile("caf\xC3\xA9 \xE5\x86\x99.xml");
    const Node root = At(sFile), read = At(sFile);
    root->SetName(L"r");
    SetString(L"a", sValue, root);
    SetString(L"b", {L'a', L'\0', L'b', wchar_t{0xD800}}, root);
    EXPECT_TRUE(root->Save());
    EXPECT_TRUE(read->Load());
    EXPECT_EQ(sValue, GetString(L"a", L"", read));
    EXPECT_EQ(L"a\uFFFDb\uFFFD", GetString(L"b", L"", read)) << "what no document can hold";
}
