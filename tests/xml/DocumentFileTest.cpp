// Documents on the disk: what is written when, what is read, and what breaks.
#include "Util/Utf8.h"
#include "tests/support/FailingCalls.h"
#include "tests/support/FailureRecorder.h"
#include "tests/support/ResourceLimit.h"
#include "tests/support/TempFolder.h"
#include "xml/DocumentLimits.h"
#include "xml/XmlNode.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <random>
#include <string>

#include <sys/stat.h>

using namespace LS::Tests;
using namespace LS::Xml;
using Node = LS::Util::Handle<XmlNode>;
namespace fs = std::filesystem;

namespace {

const std::string DOCUMENT = "<?xml version=\"1.0\" encoding=\"UTF-8\" ?>\n"
                             "<root Version=\"6\" Text='a&quot;&#x0A;'>\n"
                             "    <!-- > <b> --><Save Type=\"caf\xC3\xA9 \xE5\x86\x99\" />\n"
                             "    <Text>x &amp; &#xE9;</Text><![CDATA[<raw>]]>\n"
                             "</root>\n";

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
        {"nothing", [](const Node&) {}, false},
        {"same name", [](const Node& root) { root->SetName(L"root"); }, false},
        {"same value", [](const Node& root) { root->GetChild(L"Save/Deep/Type")->SetValue(L"x"); }, false},
        {"same file", [](const Node& root) { root->SetFileName(root->GetFileName()); }, false},
        {"failed removal", [](const Node& root) { root->RemoveChild(L"none"); }, false},
        {"value", [](const Node& root) { root->GetChild(L"Save/Deep/Type")->SetValue(L"y"); }, true},
        {"name", [](const Node& root) { root->GetChild(L"Save/Deep")->SetName(L"Shallow"); }, true},
        {"new leaf", [](const Node& root) { SetInt(L"Save/Deep/n", 1, root); }, true},
        {"removed leaf", [](const Node& root) { root->GetChild(L"Save/Deep")->RemoveChild(L"Type"); }, true},
        {"cleared", [](const Node& root) { root->GetChild(L"Save/Deep")->Clear(); }, true},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const std::string sSpaced = "<root  >  <Save><Deep Type='x'/></Save></root>";
        WriteText(sFile, sSpaced);
        const Node root = At(folder.WideFile("a.xml"));
        ASSERT_TRUE(root->Load());
        c.change(root);
        EXPECT_TRUE(root->Save());
        EXPECT_EQ(c.written, ReadText(sFile) != sSpaced);
        EXPECT_EQ(c.written, ReadText(sFile) == root->ToString());

        fs::remove(sFile);
        EXPECT_TRUE(root->Save()) << "nothing left to write";
        EXPECT_FALSE(fs::exists(sFile));
    }
}

TEST(DocumentFile, LoadedNodesLeaveOlderChangesPending)
{
    const TempFolder folder;
    WriteText(folder.File("a.xml"), "<root/>");
    const Node root = At(folder.WideFile("a.xml"));
    SetInt(L"n", 1, root);
    EXPECT_TRUE(root->Load());
    EXPECT_TRUE(root->Save());
    EXPECT_EQ(root->ToString(), ReadText(folder.File("a.xml")));
    EXPECT_NE(std::string::npos, root->ToString().find("n=\"1\""));
}

TEST(DocumentFile, RoundTripDropsCommentsAndKeepsTheRest)
{
    const TempFolder folder;
    WriteText(folder.File("a.xml"),
              "<?xml version=\"1.0\"?><!-- c -->\r\n" + DOCUMENT.substr(DOCUMENT.find('\n')));
    const Node root = At(folder.WideFile("a.xml"));
    ASSERT_TRUE(root->Load());
    SetInt(L"Save/n", 1, root);
    ASSERT_TRUE(root->Save());
    EXPECT_EQ("<?xml version=\"1.0\" encoding=\"UTF-8\" ?>\n"
              "<root Version=\"6\" Text='a&quot;&#x0A;'>&lt;raw&gt;\n"
              "    <Save Type=\"caf\xC3\xA9 \xE5\x86\x99\" n=\"1\" />\n"
              "    <Text>x &amp; \xC3\xA9</Text>\n"
              "</root>\n",
              ReadText(folder.File("a.xml")));
}

TEST(DocumentFile, NodesWithoutANameAreSkipped)
{
    const FailureRecorder log;
    const TempFolder folder;
    const Node root = At(folder.WideFile("a.xml"));
    root->AddChild(XmlNode::CreateElement());
    root->AddChild(XmlNode::CreateAttribute());
    EXPECT_FALSE(root->Save()) << "the root";
    EXPECT_TRUE(folder.Names().empty());
    root->SetName(L"r");
    EXPECT_TRUE(root->Save());
    EXPECT_EQ("<?xml version=\"1.0\" encoding=\"UTF-8\" ?>\n<r />\n", ReadText(folder.File("a.xml")));
}

TEST(DocumentFile, NamesPassThroughTheCodePage)
{
    const struct {
        const char* name;
        std::wstring wide; // empty where the code page can't express it
    } cases[] = {
        {"plain.xml", L"plain.xml"}, {"caf\xC3\xA9 \xE5\x86\x99.xml", L"caf\u00E9 \u5199.xml"},
        {"\xC3\xB1.xml", L""},       {"\xF0\x9F\x93\xB7.xml", L""},
        {"\xFF.xml", L""},
    };
    for (const auto& c : cases) {
        const FailureRecorder log;
        const TempFolder folder;
        const bool bExpressible = !c.wide.empty();
        const Node root = At(folder.WideFile(c.name)), copy = At(folder.WideFile(c.name));
        root->SetName(L"r");
        EXPECT_EQ(bExpressible, root->Save()) << c.name;
        EXPECT_EQ(bExpressible ? std::vector<std::string>{c.name} : std::vector<std::string>(),
                  folder.Names());
        WriteText(folder.File(c.name), "<r/>");
        EXPECT_EQ(bExpressible, copy->Load()) << c.name;
        EXPECT_EQ(bExpressible ? 0U : 2U, log.Lines().size());
    }
    const FailureRecorder log;
    EXPECT_FALSE(At(L"")->Load());
    const Node nowhere = At(L"");
    nowhere->SetName(L"r");
    EXPECT_FALSE(nowhere->Save());
}

TEST(DocumentFile, FailedSavesLeaveTheOldFileAndTheChange)
{
    const TempFolder folder;
    const Node root = At(folder.WideFile("a.xml"));
    root->SetName(L"r");
    ASSERT_TRUE(root->Save());
    const std::string sOld = root->ToString();
    SetInt(L"n", 1, root);

    const FailureRecorder log;
    {
        const ResourceLimit full(RLIMIT_FSIZE, 30);
        EXPECT_FALSE(root->Save());
    }
    {
        const FailingCall brokenDisk(SystemCall::Fsync, EIO);
        EXPECT_FALSE(root->Save());
    }
    {
        const FailingCall readOnly(SystemCall::FaccessAt, EACCES);
        EXPECT_FALSE(root->Save());
    }
    SetString(L"large", std::wstring(MAX_DOCUMENT_BYTES, L'x'), root);
    EXPECT_FALSE(root->Save()) << "could not be loaded again";
    root->RemoveChild(L"large");
    EXPECT_EQ(4U, log.Lines().size());
    EXPECT_EQ(sOld, ReadText(folder.File("a.xml")));
    EXPECT_EQ(std::vector<std::string>{"a.xml"}, folder.Names());

    EXPECT_TRUE(root->Save()) << "the changes were pending";
    EXPECT_EQ(root->ToString(), ReadText(folder.File("a.xml")));
}

TEST(DocumentFile, OnlyRegularFilesAreRead)
{
    const TempFolder folder;
    fs::create_directory(folder.File("folder"));
    ASSERT_EQ(0, mkfifo(folder.File("pipe").c_str(), 0600));
    fs::create_symlink("loop", folder.File("loop"));
    fs::create_symlink("real", folder.File("link"));
    WriteText(folder.File("real"), "<r/>");
    WriteText(folder.File("empty"), "");
    WriteText(folder.File("declaration"), "<?xml version=\"1.0\"?>\n<!-- only -->\n");
    WriteText(folder.File("double"), "<r a='1' a='2'/>");
    WriteText(folder.File("large"), "<r>" + std::string(2 * MAX_DOCUMENT_BYTES, ' ') + "</r>");
    const struct {
        const char* name;
        bool loads;
        unsigned lines;
    } cases[] = {
        {"real", true, 0},   {"link", true, 0},    {"missing", false, 0},     {"folder", false, 1},
        {"pipe", false, 1},  {"loop", false, 1},   {"declaration", false, 1}, {"empty", false, 1},
        {"large", false, 1}, {"double", false, 1},
    };
    for (const auto& c : cases) {
        const FailureRecorder log;
        EXPECT_EQ(c.loads, At(folder.WideFile(c.name))->Load()) << c.name;
        EXPECT_EQ(c.lines, log.Lines().size()) << c.name;
    }
}

TEST(DocumentFile, BrokenAtEveryByte)
{
    const FailureRecorder log;
    const TempFolder folder;
    const auto loads = [&folder](const std::string& sText) {
        fs::remove(folder.File("a.xml")); // some disks take their time to write a file over
        WriteText(folder.File("a.xml"), sText);
        const Node root = At(folder.WideFile("a.xml"));
        const bool bLoaded = root->Load();
        EXPECT_TRUE(bLoaded || root->GetChildCount() == 0) << "half a document: " << sText;
        return bLoaded;
    };
    ASSERT_TRUE(loads(DOCUMENT));
    const std::size_t nWhole = DOCUMENT.size() - 1; // the line end after the root may go
    for (std::size_t i = 0; i < nWhole; ++i)
        EXPECT_FALSE(loads(DOCUMENT.substr(0, i))) << "cut at " << i;

    // Whatever comes of these, it must be a result and no fault.
    const std::string sBytes =
        std::string("<>&;'\"/!?-[]#x=\n\r \t\0\x01\x7F", 22) + "\x80\xBF\xC3\xE5\xEF\xF0\xFF";
    int nLoaded = 0;
    for (std::size_t i = 0; i < nWhole; ++i)
        for (const char c : sBytes) {
            std::string sText = DOCUMENT;
            sText[i] = c;
            nLoaded += loads(sText) ? 1 : 0;
        }
    EXPECT_GT(nLoaded, 0);
}

TEST(DocumentFile, RandomPiecesOfMarkup)
{
    const FailureRecorder log;
    const char* const szPieces[] = {
        "<a>", "</a>",      "<a",  "/>",    ">",        "<b c='",       "'",   "\"",   "=",     "<!--",
        "-->", "<![CDATA[", "]]>", "<?xml", "?>",       "version=",     "&#x", "41;",  "&#65;", "&",
        ";",   "<!",        " ",   "x",     "\xC3\xA9", "\xEF\xBB\xBF", "</",  "\r\n", "/",     "<"};
    std::mt19937 random(1); // NOLINT(bugprone-random-generator-seed,cert-msc51-cpp): the same texts each run
    int nLoaded = 0;
    for (int i = 0; i < 30000; ++i) {
        const bool bWrapped = random() % 2 == 0;
        std::string sText = bWrapped ? "<a>" : "";
        for (auto nPieces = random() % 12; nPieces > 0; --nPieces)
            sText += szPieces[random() % std::size(szPieces)];
        sText += bWrapped ? "</a>" : "";
        const Node root = XmlNode::CreateElement(), copy = XmlNode::CreateElement();
        if (!root->Parse(LS::Util::FromUtf8(sText)))
            continue;
        ++nLoaded;
        EXPECT_TRUE(copy->Parse(LS::Util::FromUtf8(root->ToString()))) << sText;
        EXPECT_EQ(root->GetChildCount(), copy->GetChildCount()) << sText;
    }
    EXPECT_GT(nLoaded, 1000);
}
