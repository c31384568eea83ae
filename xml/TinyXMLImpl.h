// Between our tree and XML documents, by way of the TinyXML library.
#pragma once

#include <string>

class TiXmlElement;

namespace LS::Xml {

class XmlNodeBase;

/// The operations of a root; what they do and when they fail stands at XmlNode.
class TinyXMLImpl {
public:
    static bool IsModified(const XmlNodeBase& root); ///< this node or any below it

    static bool Save(XmlNodeBase& root);
    static std::string ToString(const XmlNodeBase& root);
    static bool Load(XmlNodeBase& root);
    static bool Parse(XmlNodeBase& root, const std::wstring& text);

private:
    static void ClearModified(XmlNodeBase& root);
    static bool ParseBytes(XmlNodeBase& root, std::string text, const std::string& file);
    static void Convert(const XmlNodeBase& node, TiXmlElement& element);
    static void Fill(XmlNodeBase& node, const TiXmlElement& element);
};

} // namespace LS::Xml
