// The tree itself: nodes with a name, a text and children.
#pragma once

#include "xml/XmlNode.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace LS::Xml {

/// Trees may be of any depth: nothing here calls itself from level to level.
class XmlNodeBase : public XmlNode {
public:
    explicit XmlNodeBase(std::int32_t nIsElement); ///< @param nIsElement  1: an element, 0: a leaf
    ~XmlNodeBase() override;

    unsigned GetChildCount() const override;
    int IsElement() const override;
    NodeHandle GetChild(unsigned index) const override;
    NodeHandle GetChild(const std::wstring& path) const override;
    bool AddChild(const NodeHandle& node) override;
    std::wstring GetName() const override;
    bool SetName(const std::wstring& newName) override;
    std::wstring GetValue() const override;
    bool SetValue(const std::wstring& newValue) override;
    std::wstring GetFileName() const override;
    bool SetFileName(const std::wstring& newFileName) override;
    bool Save() override;
    std::string ToString() const override;
    bool Load() override;
    bool Parse(const std::wstring& text) override;
    bool Clear() override;

private:
    friend class TinyXMLImpl;
    using Child = Util::Handle<XmlNodeBase>;

    bool Change(std::wstring& member, const std::wstring& text);
    std::size_t IndexOfName(const std::wstring& wanted) const; ///< of the first one; else the child count

    std::int32_t isElement;
    std::wstring fileName;
    std::wstring name;
    std::wstring value;
    std::vector<Child> children; // in document order, attributes and elements mixed
    bool modified = false;
};

} // namespace LS::Xml
