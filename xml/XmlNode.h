// The tree of an XML document as the rest of the program sees it.
#pragma once

#include <LS/Util/Handle>

#include <string>

namespace LS::Xml {

/// A node: an element, which may have children and a file, or a leaf, which stands for an XML attribute.
///
/// A path such as "Save/ImageType" names a node below another one; it doesn't say which kind of node that
/// is. At each level the first child of that name counts, and a later one is never tried. A node owns its
/// children. Nobody may add a node below itself: such a ring would never be freed.
///
/// Nothing here throws for bad data or shows a message: the result is false, a null handle or the default.
class XmlNode : public virtual Util::Object {
public:
    using NodeHandle = Util::Handle<XmlNode>;

    static NodeHandle CreateElement();
    static NodeHandle CreateAttribute();

    virtual unsigned GetChildCount() const = 0;
    virtual int IsElement() const = 0;                               ///< 1 or 0
    virtual NodeHandle GetChild(unsigned index) const = 0;           ///< null if out of range
    virtual NodeHandle GetChild(const std::wstring& path) const = 0; ///< null if the path leads nowhere

    /// Appends a node. False if that very node is a child already, and on a leaf.
    virtual bool AddChild(const NodeHandle& node) = 0;

    virtual std::wstring GetName() const = 0; ///< the tag, or the attribute's name
    virtual bool SetName(const std::wstring& name) = 0;
    virtual std::wstring GetValue() const = 0; ///< the element's text, or the attribute's value
    virtual bool SetValue(const std::wstring& value) = 0;

    /// The file of the document, used on the root. A leaf has none: there, setting it gives false.
    virtual std::wstring GetFileName() const = 0;
    virtual bool SetFileName(const std::wstring& fileName) = 0;

    /// Writes the document of which this is the root to its file, if anything in it has changed. The file is
    /// replaced when the new one is whole; after a failure the old one is there unharmed, the changes stay
    /// pending and the log has the reason. Never writes what Load would refuse.
    virtual bool Save() = 0;

    /// The document as the file would hold it, in UTF-8; empty where Save would fail.
    virtual std::string ToString() const = 0;

    /// Adds what the file holds to what this node holds already, and sets its name and text.
    /// @return false if the file is missing, or broken, in which case the log has the reason: no XML, not
    ///         UTF-8, no regular file, larger than 64 KiB or of more than 100 levels. The node is then as
    ///         before
    virtual bool Load() = 0;

    /// As Load, from a text.
    virtual bool Parse(const std::wstring& text) = 0;

    virtual bool Clear() = 0; ///< removes all children; name, value and file name stay
};

/// The value of the node at a path below root. The default also if root is null or a leaf, and where the
/// text is no number. Leading digits are taken, so that "95x" is 95; the locale plays no part.
std::wstring GetString(const std::wstring& path, const std::wstring& defaultValue,
                       const Util::Handle<XmlNode>& root);
int GetInt(const std::wstring& path, int defaultValue, const Util::Handle<XmlNode>& root);
double GetDouble(const std::wstring& path, const Util::Handle<XmlNode>& root); ///< default: 0

/// Adds a leaf at a path below root, and the elements that are missing on the way. Never replaces a node of
/// that name: the older one stays what the path finds. A document is rewritten by Clear and a full set of
/// calls. Doubles have up to 6 significant digits: 6.0 is "6".
/// @return the new leaf; null where the way leads through a leaf
Util::Handle<XmlNode> SetString(const std::wstring& path, const std::wstring& value,
                                const Util::Handle<XmlNode>& root);
Util::Handle<XmlNode> SetInt(const std::wstring& path, int value, const Util::Handle<XmlNode>& root);
Util::Handle<XmlNode> SetDouble(const std::wstring& path, double value, const Util::Handle<XmlNode>& root);

/// The same for an element with a text.
Util::Handle<XmlNode> AddElement(const std::wstring& path, const std::wstring& text,
                                 const Util::Handle<XmlNode>& root);

} // namespace LS::Xml
