// Children, paths and change marks of a node.
#include "xml/XmlNodeBase.h"

#include "xml/TinyXMLImpl.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace LS::Xml {

namespace {

bool IsLastReference(Util::Object& object)
{
    const bool last = object.ref() == 2; // the caller's, and this one
    object.unref();
    return last;
}

} // namespace

XmlNodeBase::XmlNodeBase(std::int32_t nIsElement) : isElement(nIsElement) {}

/// Takes the tree apart from a list: if each node let go of its own children, a deep tree would overflow the
/// stack.
XmlNodeBase::~XmlNodeBase()
{
    std::vector<Child> orphans = std::move(children);
    while (!orphans.empty()) {
        const Child child = orphans.back();
        orphans.pop_back();
        if (!IsLastReference(*child.get()))
            continue; // somebody else keeps it, with all that is below
        orphans.insert(orphans.end(), child->children.begin(), child->children.end());
        child->children.clear();
    }
}

unsigned XmlNodeBase::GetChildCount() const
{
    return static_cast<unsigned>(children.size());
}

int XmlNodeBase::IsElement() const
{
    return isElement;
}

XmlNode::NodeHandle XmlNodeBase::GetChild(unsigned index) const
{
    return index < children.size() ? NodeHandle(children[index]) : NodeHandle();
}

XmlNode::NodeHandle XmlNodeBase::GetChild(const std::wstring& path) const
{
    const XmlNodeBase* node = this;
    for (std::wstring_view rest(path);;) {
        const std::size_t slash = rest.find(L'/');
        const std::size_t index = node->IndexOfName(std::wstring(rest.substr(0, slash)));
        if (index == node->children.size())
            return {};
        if (slash == rest.npos || slash + 1 == rest.size())
            return node->children[index];
        node = node->children[index].get();
        rest.remove_prefix(slash + 1);
    }
}

bool XmlNodeBase::AddChild(const NodeHandle& node)
{
    LS_ASSERT(node);
    const auto same = [&node](const Child& child) { return child->isSame(node.get()) != 0; };
    const Child child(node);
    if (!isElement || !child || std::ranges::any_of(children, same))
        return false;
    children.push_back(child);
    modified = true;
    return true;
}

std::wstring XmlNodeBase::GetName() const
{
    return name;
}

bool XmlNodeBase::SetName(const std::wstring& newName)
{
    return Change(name, newName);
}

std::wstring XmlNodeBase::GetValue() const
{
    return value;
}

bool XmlNodeBase::SetValue(const std::wstring& newValue)
{
    return Change(value, newValue);
}

std::wstring XmlNodeBase::GetFileName() const
{
    return fileName;
}

bool XmlNodeBase::SetFileName(const std::wstring& newFileName)
{
    return isElement && Change(fileName, newFileName);
}

bool XmlNodeBase::Save()
{
    if (fileName.empty())
        return false;
    return !TinyXMLImpl::IsModified(*this) || TinyXMLImpl::Save(*this);
}

std::string XmlNodeBase::ToString() const
{
    return TinyXMLImpl::ToString(*this);
}

bool XmlNodeBase::Load()
{
    return isElement && TinyXMLImpl::Load(*this);
}

bool XmlNodeBase::Parse(const std::wstring& text)
{
    return isElement && TinyXMLImpl::Parse(*this, text);
}

bool XmlNodeBase::Clear()
{
    children.clear();
    modified = true;
    return true;
}

bool XmlNodeBase::Change(std::wstring& member, const std::wstring& text)
{
    if (member != text) {
        member = text;
        modified = true;
    }
    return true;
}

std::size_t XmlNodeBase::IndexOfName(const std::wstring& wanted) const
{
    const auto named = [&wanted](const Child& child) { return child->name == wanted; };
    return static_cast<std::size_t>(std::find_if(children.begin(), children.end(), named) - children.begin());
}

} // namespace LS::Xml
