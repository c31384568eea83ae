// Walks from one piece of markup to the next, as the XML library does.
#include "xml/DocumentLimits.h"

#include "Util/Utf8.h"

#include <algorithm>
#include <charconv>
#include <system_error>

namespace LS::Xml {

namespace {

constexpr auto NOT_FOUND = std::string_view::npos;
constexpr std::string_view DECLARATION = "<?xml";

bool IsLetter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

/// The library takes every byte beyond ASCII for a letter.
bool StartsName(char c)
{
    return IsLetter(c) || c == '_' || static_cast<unsigned char>(c) >= 127;
}

/// Of version numbers and names of encodings.
bool IsPlain(char c)
{
    return IsLetter(c) || (c >= '0' && c <= '9') || c == '.' || c == '_' || c == '-';
}

bool IsBetweenWords(char c)
{
    return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '=';
}

bool StartsDeclaration(std::string_view sMarkup)
{
    const auto sameLetter = [](char a, char b) {
        return a == (IsLetter(b) ? static_cast<char>(b | 0x20) : b);
    };
    return sMarkup.size() >= DECLARATION.size() &&
           std::equal(DECLARATION.begin(), DECLARATION.end(), sMarkup.begin(), sameLetter);
}

/// Whether each character reference of a text or a tag stands for a character.
bool AreReferencesWhole(std::string_view sText)
{
    for (std::size_t i = sText.find("&#"); i != NOT_FOUND; i = sText.find("&#", i)) {
        i += 2;
        const bool bHexadecimal = sText.substr(i).starts_with('x');
        i += bHexadecimal ? 1 : 0;
        unsigned nCode = 0;
        const char* const pEnd = sText.data() + sText.size();
        const auto [pStop, error] = std::from_chars(sText.data() + i, pEnd, nCode, bHexadecimal ? 16 : 10);
        const bool bSurrogate = nCode >= 0xD800 && nCode <= 0xDFFF;
        if (error != std::errc() || pStop == pEnd || *pStop != ';' || nCode == 0 || nCode > 0x10FFFF ||
            bSurrogate)
            return false;
    }
    return true;
}

/// Takes a text apart from its start.
class Scanner {
public:
    explicit Scanner(std::string_view sText) : m_sText(sText) {}

    std::string Run()
    {
        while (m_sReason.empty() && !m_sText.empty()) {
            const std::size_t nMarkup = std::min(m_sText.find('<'), m_sText.size());
            if (!AreReferencesWhole(m_sText.substr(0, nMarkup)))
                Refuse("a broken character reference");
            m_sText.remove_prefix(nMarkup);
            if (!m_sText.empty())
                TakeMarkup();
            m_bAtStart = false;
        }
        if (m_nLevel > 0)
            Refuse("an element without an end");
        return m_sReason;
    }

private:
    void Refuse(const char* szReason)
    {
        if (m_sReason.empty())
            m_sReason = szReason;
    }

    void TakeMarkup()
    {
        if (m_sText.starts_with("<!--"))
            SkipPast("-->", 4);
        else if (m_sText.starts_with("<![CDATA["))
            SkipPast("]]>", 9);
        else if (StartsDeclaration(m_sText))
            TakeDeclaration();
        else if (m_sText.starts_with("</"))
            TakeEndTag();
        else if (m_sText.size() > 1 && StartsName(m_sText[1]))
            TakeStartTag();
        else
            SkipPast(">", 1); // to the library as well, whatever it may be
    }

    void SkipPast(std::string_view sEnd, std::size_t nFrom)
    {
        const std::size_t nEnd = m_sText.find(sEnd, nFrom);
        if (nEnd == NOT_FOUND)
            Refuse("markup without an end");
        m_sText.remove_prefix(nEnd == NOT_FOUND ? m_sText.size() : nEnd + sEnd.size());
    }

    /// The library sees quoted text only behind the names that it knows, words everywhere else. With plain
    /// values in paired quotes that makes no difference.
    void TakeDeclaration()
    {
        const std::string_view sContent = m_sText.substr(0, m_sText.find('>'));
        std::size_t i = DECLARATION.size();
        char cQuote = '\0'; // the one that is open
        for (; i < sContent.size(); ++i) {
            const char c = sContent[i];
            if (cQuote == '\0' && (c == '"' || c == '\''))
                cQuote = c;
            else if (c == cQuote)
                cQuote = '\0';
            else if (!IsPlain(c) && (cQuote != '\0' || !IsBetweenWords(c)))
                break;
        }
        if (!m_bAtStart || cQuote != '\0' || sContent.substr(i) != "?")
            Refuse("a broken declaration");
        SkipPast(">", 1);
    }

    void TakeEndTag()
    {
        if (--m_nLevel < 0)
            Refuse("an end without its element");
        SkipPast(">", 2);
    }

    /// Quotes hide the end of the tag; the library takes them nowhere but around values.
    void TakeStartTag()
    {
        std::size_t nEnd = 1;
        int nAttributes = 0;
        while (nEnd < m_sText.size() && m_sText[nEnd] != '>') {
            const char c = m_sText[nEnd];
            if (c == '=')
                ++nAttributes;
            if (c == '"' || c == '\'')
                nEnd = m_sText.find(c, nEnd + 1);
            if (nEnd == NOT_FOUND)
                break;
            ++nEnd;
        }
        if (nEnd >= m_sText.size()) {
            Refuse("a tag without an end");
            m_sText = {};
            return;
        }

        if (nAttributes > MAX_ATTRIBUTES)
            Refuse("too many attributes");
        if (!AreReferencesWhole(m_sText.substr(0, nEnd)))
            Refuse("a broken character reference");
        if (m_nLevel >= MAX_LEVELS)
            Refuse("too many levels");
        if (m_sText[nEnd - 1] != '/')
            ++m_nLevel;
        m_sText.remove_prefix(nEnd + 1);
    }

    std::string_view m_sText; // what is left of it
    std::string m_sReason;
    int m_nLevel = 0;
    bool m_bAtStart = true;
};

} // namespace

std::string RefusalReason(std::string_view sText)
{
    if (sText.size() > MAX_DOCUMENT_BYTES)
        return "larger than a megabyte";
    if (sText.find('\0') != NOT_FOUND)
        return "a null character";
    if (!Util::IsUtf8(sText))
        return "not UTF-8";
    return Scanner(sText).Run();
}

} // namespace LS::Xml
