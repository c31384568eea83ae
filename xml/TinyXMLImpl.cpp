// Builds library documents from trees and trees from library documents.
#include "xml/TinyXMLImpl.h"

#include "Util/FailureLog.h"
#include "Util/Paths.h"
#include "Util/RegularFile.h"
#include "Util/ReplacedFile.h"
#include "Util/Utf8.h"
#include "xml/XmlNodeBase.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <tinyxml.h>
#include <unistd.h>
#include <wx/strconv.h>

namespace LS::Xml {

namespace {

constexpr std::size_t MAX_DOCUMENT_BYTES = std::size_t{64} << 10; ///< the library's recursion is safe in it
constexpr int MAX_LEVELS = 100;                                   ///< as ours is; the root is the first

constexpr const char* LOADING = "loading an XML file";
constexpr const char* UNKNOWN_NAME = "no name, or one that code page 936 can't express";
constexpr const char* SAVING = "saving an XML file";

bool Fail(const char* szStep, const std::string& sFile, const std::string& sReason)
{
    Util::LogFailure(szStep, sFile, sReason);
    return false;
}

/// A file's own name passes through code page 936, whatever the system's own; what that page can't express is
/// the empty name, which no file has. The page's bytes are no name here, so the file that is opened bears the
/// file system's. The folder is the user's and may have any name.
std::string NarrowName(const std::wstring& fileName)
{
    const wxCSConv codePage936(wxFONTENCODING_CP936);
    const wxCharBuffer narrow = codePage936.cWC2MB(Util::FileNameFromPath(fileName).c_str());
    return narrow.length() > 0 ? Util::NarrowPath(fileName) : std::string();
}

std::string LogName(const XmlNodeBase& root)
{
    return Util::NarrowPath(root.GetFileName());
}

/// A text for the library. No document can hold a null character.
std::string LibraryText(std::wstring text)
{
    std::replace(text.begin(), text.end(), L'\0', L'\xFFFD');
    return Util::ToUtf8(text);
}

/// What the library would write to a file; empty if there is no memory for it or too much for a later load.
std::string DocumentBytes(const TiXmlDocument& document)
{
    char* pBytes = nullptr;
    std::size_t nBytes = 0;
    FILE* const pStream = open_memstream(&pBytes, &nBytes);
    if (!pStream)
        return {};
    const bool bWritten = document.SaveFile(pStream);
    const bool bClosed = std::fclose(pStream) == 0;
    const std::unique_ptr<char, decltype(&std::free)> bytes(pBytes, &std::free);
    const bool bReadable = nBytes <= MAX_DOCUMENT_BYTES;
    return bWritten && bClosed && bReadable ? std::string(pBytes, nBytes) : std::string();
}

/// Whether any element is beyond the last level.
bool IsTooDeep(const TiXmlElement& element, int nLevel = 1)
{
    bool bTooDeep = nLevel > MAX_LEVELS;
    for (auto* p = element.FirstChildElement(); p && !bTooDeep; p = p->NextSiblingElement())
        bTooDeep = IsTooDeep(*p, nLevel + 1);
    return bTooDeep;
}

/// The library's own reading of a file does the same.
void NormaliseLineEnds(std::string& sText)
{
    std::size_t nKept = 0;
    for (std::size_t i = 0; i < sText.size(); ++i)
        if (sText[i] != '\r')
            sText[nKept++] = sText[i];
        else if (i + 1 == sText.size() || sText[i + 1] != '\n')
            sText[nKept++] = '\n';
    sText.resize(nKept);
}

/// A file's bytes; one more than allowed if it is larger than that. Failures are logged.
std::optional<std::string> ReadFile(const std::string& sFile)
{
    const Util::RegularFile file(LOADING, sFile, O_RDONLY);
    if (!file.IsOpen())
        return std::nullopt;

    std::string sBytes(MAX_DOCUMENT_BYTES + 1, '\0');
    std::size_t nBytes = 0;
    while (nBytes < sBytes.size()) {
        const ssize_t nRead = read(file.Descriptor(), sBytes.data() + nBytes, sBytes.size() - nBytes);
        if (nRead < 0 && errno == EINTR)
            continue;
        if (nRead < 0) {
            Fail(LOADING, sFile, Util::SystemError());
            return std::nullopt;
        }
        if (nRead == 0)
            break;
        nBytes += static_cast<std::size_t>(nRead);
    }
    sBytes.resize(nBytes);
    return sBytes;
}

/// Calls visit(node) for a tree from the top; where it gives false, what is below is left out. Trees
/// may be too deep for a function that calls itself.
/// @param childrenOf  gives the handles of a node's children
template <typename Node, typename ChildrenOf, typename Visit>
void Walk(Node& root, ChildrenOf childrenOf, Visit visit)
{
    std::vector<Node*> pending{&root};
    while (!pending.empty()) {
        Node* const node = pending.back();
        pending.pop_back();
        if (visit(*node))
            for (const auto& child : childrenOf(*node))
                pending.push_back(child.get());
    }
}

} // namespace

bool TinyXMLImpl::IsModified(const XmlNodeBase& root)
{
    bool modified = false;
    Walk(
        root, [](const XmlNodeBase& node) -> const auto& { return node.children; },
        [&modified](const XmlNodeBase& node) {
            modified = modified || node.modified;
            return !modified;
        });
    return modified;
}

/// Of all that was written: nodes without a name weren't.
void TinyXMLImpl::ClearModified(XmlNodeBase& root)
{
    Walk(
        root, [](const XmlNodeBase& node) -> const auto& { return node.children; },
        [](XmlNodeBase& node) {
            const bool written = !node.name.empty();
            node.modified = node.modified && !written;
            return written;
        });
}

bool TinyXMLImpl::Save(XmlNodeBase& root)
{
    const std::string sFile = NarrowName(root.fileName);
    if (sFile.empty())
        return Fail(SAVING, LogName(root), UNKNOWN_NAME);
    const std::string sBytes = ToString(root);
    if (sBytes.empty())
        return Fail(SAVING, sFile, "no document that could be loaded again");

    Util::ReplacedFile file(sFile);
    if (!file.IsOpen() || !file.Write(sBytes.data(), sBytes.size()) || !file.Commit())
        return Fail(SAVING, sFile, file.Reason());
    ClearModified(root);
    return true;
}

std::string TinyXMLImpl::ToString(const XmlNodeBase& root)
{
    if (!root.isElement || root.name.empty())
        return {};
    TiXmlDocument document;
    document.LinkEndChild(new TiXmlDeclaration("1.0", "UTF-8", ""));
    auto* const pElement = new TiXmlElement(Util::ToUtf8(root.name));
    document.LinkEndChild(pElement); // the document deletes what is linked
    Convert(root, *pElement);
    return IsTooDeep(*pElement) ? std::string() : DocumentBytes(document);
}

void TinyXMLImpl::Convert(const XmlNodeBase& node, TiXmlElement& element)
{
    if (!node.value.empty())
        element.LinkEndChild(new TiXmlText(LibraryText(node.value)));
    for (const auto& child : node.children) {
        if (child->name.empty())
            continue;
        const std::string sName = Util::ToUtf8(child->name);
        if (child->isElement) {
            auto* const pElement = new TiXmlElement(sName);
            element.LinkEndChild(pElement);
            Convert(*child.get(), *pElement);
        } else {
            element.SetAttribute(sName, LibraryText(child->value));
        }
    }
}

bool TinyXMLImpl::Load(XmlNodeBase& root)
{
    const std::string sFile = NarrowName(root.fileName);
    if (sFile.empty())
        return Fail(LOADING, LogName(root), UNKNOWN_NAME);
    if (Util::IsMissing(sFile))
        return false;
    std::optional<std::string> sBytes = ReadFile(sFile);
    return sBytes && ParseBytes(root, std::move(*sBytes), sFile);
}

bool TinyXMLImpl::Parse(XmlNodeBase& root, const std::wstring& text)
{
    return ParseBytes(root, Util::ToUtf8(text), "");
}

bool TinyXMLImpl::ParseBytes(XmlNodeBase& root, std::string text, const std::string& file)
{
    if (text.size() > MAX_DOCUMENT_BYTES)
        return Fail(LOADING, file, "larger than 64 KiB");
    if (!Util::IsUtf8(text))
        return Fail(LOADING, file, "not UTF-8"); // the library would read past the end of half a character

    NormaliseLineEnds(text);
    TiXmlDocument document;
    // Whatever a declaration says: other encodings have been refused, unless ASCII is all that they hold.
    document.Parse(text.c_str(), nullptr, TIXML_ENCODING_UTF8);
    if (document.Error())
        return Fail(LOADING, file, document.ErrorDesc());
    const TiXmlElement* const pElement = document.FirstChildElement();
    if (!pElement)
        return Fail(LOADING, file, "no root element");
    if (IsTooDeep(*pElement))
        return Fail(LOADING, file, "too many levels");
    Fill(root, *pElement);
    return true;
}

void TinyXMLImpl::Fill(XmlNodeBase& node, const TiXmlElement& element)
{
    const auto add = [&node](std::int32_t isElement) -> XmlNodeBase& {
        return *node.children.emplace_back(new XmlNodeBase(isElement)).get();
    };
    node.name = Util::FromUtf8(element.ValueStr());
    for (const TiXmlAttribute* pAttribute = element.FirstAttribute(); pAttribute;
         pAttribute = pAttribute->Next()) {
        XmlNodeBase& leaf = add(0);
        leaf.name = Util::FromUtf8(pAttribute->NameTStr());
        leaf.value = Util::FromUtf8(pAttribute->ValueStr());
    }
    for (const TiXmlNode* pChild = element.FirstChild(); pChild; pChild = pChild->NextSibling()) {
        if (const TiXmlElement* const pElement = pChild->ToElement())
            Fill(add(1), *pElement);
        else if (pChild->ToText())
            node.value = Util::FromUtf8(pChild->ValueStr());
    }
    node.modified = false;
}

} // namespace LS::Xml
