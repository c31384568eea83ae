// A private folder for one test.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace LS::Tests {

using Bytes = std::vector<unsigned char>;

/// What a folder holds, sorted, hidden files included.
std::vector<std::string> NamesIn(const std::string& sFolder);

/// Made with a unique name, and removed with all that it holds.
class TempFolder {
public:
    TempFolder();
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;
    ~TempFolder();

    const std::string& Path() const { return m_sPath; } ///< without a separator at its end
    std::string File(std::string_view sName) const;     ///< a path in this folder
    std::wstring WideFile(std::string_view sName) const;
    std::vector<std::string> Names() const { return NamesIn(m_sPath); }

private:
    std::string m_sPath;
};

Bytes ReadBytes(const std::string& sPath);      ///< empty if the file isn't there
std::string ReadText(const std::string& sPath); ///< the same as a text
void WriteBytes(const std::string& sPath, const void* pData, std::size_t nBytes);
void WriteText(const std::string& sPath, std::string_view sText);

/// Writes the elements of a contiguous container as they lie in memory.
template <typename Container> void WriteElements(const std::string& sPath, const Container& container)
{
    WriteBytes(sPath, container.data(), container.size() * sizeof(*container.data()));
}

} // namespace LS::Tests
