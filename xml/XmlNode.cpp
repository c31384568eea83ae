// Typed access to a tree by paths.
#include "xml/XmlNode.h"

#include "xml/XmlNodeBase.h"

#include <locale>
#include <optional>
#include <sstream>
#include <string_view>

namespace LS::Xml {

using NodeHandle = Util::Handle<XmlNode>;

namespace {

constexpr wchar_t SEPARATOR = L'/';

/// Null also if root is null or a leaf.
NodeHandle Find(const std::wstring& path, const NodeHandle& root)
{
    return root && root->IsElement() ? root->GetChild(path) : NodeHandle();
}

template <typename Number> std::optional<Number> ParseLeadingNumber(const std::wstring& text)
{
    std::wistringstream stream(text);
    stream.imbue(std::locale::classic());
    Number number = 0;
    return stream >> number ? std::optional(number) : std::nullopt;
}

template <typename Number> Number GetNumber(const std::wstring& path, Number other, const NodeHandle& root)
{
    const NodeHandle node = Find(path, root);
    return node ? ParseLeadingNumber<Number>(node->GetValue()).value_or(other) : other;
}

template <typename Number> std::wstring NumberText(Number number)
{
    std::wostringstream stream;
    stream.imbue(std::locale::classic());
    stream << number;
    return stream.str();
}

/// Adds a new node of some name; null where the parent can't have children.
NodeHandle AddNamed(const NodeHandle& node, std::wstring_view name, const NodeHandle& parent)
{
    node->SetName(std::wstring(name));
    return parent->AddChild(node) ? node : NodeHandle();
}

/// The element at a path, made with all missing levels; null where the way leads through a leaf.
NodeHandle FindOrAddElement(std::wstring_view path, const NodeHandle& root)
{
    NodeHandle node = root;
    do {
        const std::size_t end = path.find(SEPARATOR);
        const std::wstring name(path.substr(0, end));
        path = end == path.npos ? std::wstring_view() : path.substr(end + 1);
        const NodeHandle child = node->GetChild(name);
        node = child ? child : AddNamed(XmlNode::CreateElement(), name, node);
    } while (node && !path.empty());
    return node;
}

NodeHandle AddAt(const std::wstring& path, const std::wstring& value, const NodeHandle& node,
                 const NodeHandle& root)
{
    LS_ASSERT(root);
    node->SetValue(value);
    const std::size_t slash = path.rfind(SEPARATOR);
    if (slash == path.npos)
        return AddNamed(node, path, root);
    const std::wstring_view whole(path);
    const NodeHandle parent = FindOrAddElement(whole.substr(0, slash), root);
    return parent ? AddNamed(node, whole.substr(slash + 1), parent) : NodeHandle();
}

} // namespace

NodeHandle XmlNode::CreateElement()
{
    return new XmlNodeBase(1);
}

NodeHandle XmlNode::CreateAttribute()
{
    return new XmlNodeBase(0);
}

std::wstring GetString(const std::wstring& path, const std::wstring& defaultValue, const NodeHandle& root)
{
    const NodeHandle node = Find(path, root);
    return node ? node->GetValue() : defaultValue;
}

int GetInt(const std::wstring& path, int defaultValue, const NodeHandle& root)
{
    return GetNumber(path, defaultValue, root);
}

double GetDouble(const std::wstring& path, const NodeHandle& root)
{
    return GetNumber(path, 0.0, root);
}

NodeHandle SetString(const std::wstring& path, const std::wstring& value, const NodeHandle& root)
{
    return AddAt(path, value, XmlNode::CreateAttribute(), root);
}

NodeHandle SetInt(const std::wstring& path, int value, const NodeHandle& root)
{
    return SetString(path, NumberText(value), root);
}

NodeHandle SetDouble(const std::wstring& path, double value, const NodeHandle& root)
{
    return SetString(path, NumberText(value), root);
}

NodeHandle AddElement(const std::wstring& path, const std::wstring& text, const NodeHandle& root)
{
    return AddAt(path, text, XmlNode::CreateElement(), root);
}

} // namespace LS::Xml
