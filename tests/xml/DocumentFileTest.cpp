// Documents on the disk: what is written when, what is read, and what breaks.
#include "tests/support/FailingCalls.h"
#include "tests/support/FailureRecorder.h"
#include "tests/support/TempFolder.h"
#include "xml/DocumentLimits.h"
#include "xml/XmlNode.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <string>

#include <sys/stat.h>

using namespace LS::Tests;
using namespace LS::Xml;
using Node = LS::Util::Handle<XmlNode>;
namespace fs = std::filesystem;

namespace {

Node At(const std::wstring& sFile)
{
    const Node root = XmlNode::CreateElement();
    root->SetFileName(sFile);
    return root;
}

} // namespace

TEST(DocumentFile, IsWrittenOnlyAfterAChange)
{
    const TempFolder folder;
    const std::string sFile = folder.File("a.xml");
    const struct {
        const char* name;
        void (*change)(const Node& root);
        bool written;
    } cases[] = {
        {"same values",
         [](const Node& root) {
             root->SetName(L"root");
             root->SetFileName(root->GetFileName());
             root->GetChild(L"Save/Deep/Type")->SetValue(L"x");
             root->RemoveChild(L"none");
         },
         false},
        {"value", [](const Node& root) { root->GetChild(L"Save/Deep/Type")->SetValue(L"y"); }, true},
        {"new leaf", [](const Node& root) { SetInt(L"Save/Deep/n", 1, root); }, true},
        {"cleared", [](const Node& root) { root->GetChild(L"Save/Deep")->Clear(); }, true},
        {"loaded over a change",
         [](const Node& root) {
             root->GetChild(L"Save")->SetName(L"Older");
             EXPECT_TRUE(root->Load());
         },
         true},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const std::string sSpaced = "<root  >  <Save><Deep Type='x'/></Save></root>";
        WriteText(sFile, sSpaced);
        const Node root = At(folder.WideFile("a.xml"));
        ASSERT_TRUE(root->Load());
        c.change(root);
        EXPECT_TRUE(root->Save());
        EXPECT_EQ(c.written ? root->ToString() : sSpaced, ReadText(sFile));

        fs::remove(sFile);
        EXPECT_TRUE(root->Save()) << "nothing left to write";
        EXPECT_FALSE(fs::exists(sFile));
    }
}

TEST(DocumentFile, NamesPassThroughTheCodePage)
{
    for (const auto& [szName, bExpressible] :
         {std::pair{"caf\xC3\xA9 \xE5\x86\x99.xml", true}, {"\xC3\xB1.xml", false}, {"\xFF.xml", false}}) {
        SCOPED_TRACE(szName);
        const FailureRecorder log;
        const TempFolder folder;
        const Node root = At(folder.WideFile(szName));
        root->SetName(L"r");
        EXPECT_EQ(bExpressible, root->Save());
        EXPECT_EQ(bExpressible, fs::exists(folder.File(szName)));
        WriteText(folder.File(szName), "<r/>");
        EXPECT_EQ(bExpressible, At(folder.WideFile(szName))->Load());
        EXPECT_EQ(bExpressible ? 0U : 2U, log.Lines().size());
    }
    const FailureRecorder log;
    const Node nowhere = At(L"");
    nowhere->SetName(L"r");
    EXPECT_FALSE(nowhere->Save() || nowhere->Load());
}

TEST(DocumentFile, FailedSavesLeaveTheOldFileAndTheChange)
{
    const TempFolder folder;
    WriteText(folder.File("a.xml"), "<old/>");
    const Node root = At(folder.WideFile("a.xml"));
    const FailureRecorder log;
    SetInt(L"n", 1, root);
    EXPECT_FALSE(root->Save()) << "no name";
    root->SetName(L"r");
    {
        const FailingCall brokenDisk(SystemCall::Fsync, EIO);
        EXPECT_FALSE(root->Save());
    }
    SetString(L"large", std::wstring(MAX_DOCUMENT_BYTES, L'x'), root);
    EXPECT_FALSE(root->Save()) << "could not be loaded again";
    root->RemoveChild(L"large");
    EXPECT_EQ(3U, log.Lines().size());
    EXPECT_EQ("<old/>", ReadText(folder.File("a.xml")));
    EXPECT_EQ(std::vector<std::string>{"a.xml"}, folder.Names());

    EXPECT_TRUE(root->Save()) << "the changes were pending";
    EXPECT_EQ(root->ToString(), ReadText(folder.File("a.xml")));
}

TEST(DocumentFile, OnlyWholeRegularFilesAreRead)
{
    const TempFolder folder;
    ASSERT_EQ(0, mkfifo(folder.File("pipe").c_str(), 0600));
    WriteText(folder.File("declaration"), "<?xml version=\"1.0\"?>\n<!-- only -->\n");
    WriteText(folder.File("double"), "<r a='1' a='2'/>");
    WriteText(folder.File("large"), "<r>" + std::string(2 * MAX_DOCUMENT_BYTES, ' ') + "</r>");
    for (const char* szName : {"missing", "pipe", "declaration", "double", "large"}) {
        const FailureRecorder log;
        EXPECT_FALSE(At(folder.WideFile(szName))->Load()) << szName;
        EXPECT_EQ(szName == std::string("missing") ? 0U : 1U, log.Lines().size()) << szName;
    }
}

TEST(DocumentFile, CutAtAnyByteChangesNothing)
{
    const FailureRecorder log;
    const std::wstring sWhole = L"<?xml version=\"1.0\" encoding=\"UTF-8\" ?>\n"
                                L"<root Version=\"6\" Text='a&quot;&#x0A;'>\n"
                                L"    <!-- > <b> --><Save Type=\"caf\u00E9 \u5199\" />\n"
                                L"    <Text>x &amp; &#xE9;</Text><![CDATA[<raw>]]>\n"
                                L"</root>";
    const Node root = XmlNode::CreateElement();
    root->SetName(L"old");
    SetInt(L"n", 1, root);
    const std::string sBefore = root->ToString();
    for (std::size_t i = 0; i < sWhole.size(); ++i) {
        EXPECT_FALSE(root->Parse(sWhole.substr(0, i))) << "cut at " << i;
        EXPECT_EQ(sBefore, root->ToString());
    }
    EXPECT_EQ(sWhole.size(), log.Lines().size());
    EXPECT_TRUE(root->Parse(sWhole));
    EXPECT_EQ("<?xml version=\"1.0\" encoding=\"UTF-8\" ?>\n"
              "<root n=\"1\" Version=\"6\" Text='a&quot;&#x0A;'>&lt;raw&gt;\n"
              "    <Save Type=\"caf\xC3\xA9 \xE5\x86\x99\" />\n"
              "    <Text>x &amp; \xC3\xA9</Text>\n"
              "</root>\n",
              root->ToString());
}
