// A file that appears under its name only when it is whole.
#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace LS::Util {

/// What becomes of a file that already bears the name.
enum class Existing { Replace, Refuse };

/// Writes beside the wanted name and moves the result there at the end, so that a full disk or a crash
/// leaves what was there before.
///
/// The sibling is a hidden file of its own in the same folder. Write to it with Write, through Descriptor,
/// or let a library open Path() by name; a library has to open that file, not put another in its place.
/// Nothing is logged here: Reason() has the words.
///
/// A link keeps pointing where it does and the file behind it is replaced. A folder, pipe or device is
/// refused without being opened, and so is a file that its permissions protect from writing. A replaced
/// file's permissions are kept, its further hard links keep the old content; a new file's follow the umask.
class ReplacedFile {
public:
    /// Creates the sibling.
    /// @param sTarget  the wanted name, in the file system's bytes. With Existing::Refuse anything that bears
    ///                 it, even a link to nothing, is a failure, now or in Commit
    explicit ReplacedFile(const std::string& sTarget, Existing existing = Existing::Replace);
    ReplacedFile(const ReplacedFile&) = delete;
    ReplacedFile& operator=(const ReplacedFile&) = delete;
    ~ReplacedFile(); ///< removes the sibling unless it was committed

    /// False when the sibling could not be created, and after Commit.
    bool IsOpen() const { return m_nFile >= 0; }
    const std::string& Path() const { return m_sPath; } ///< of the sibling
    int Descriptor() const { return m_nFile; }          ///< for reading and writing; stays this object's

    /// Appends bytes. After a failure all further calls fail, Commit too.
    bool Write(const void* pData, std::size_t nBytes);

    /// Brings the content to the disk, then gives it the wanted name.
    /// @return false if any step failed; the wanted name is then as it was
    bool Commit();

    const std::string& Reason() const { return m_sReason; } ///< of the first failure; empty without one

private:
    bool Fail(std::string sReason);
    bool FailWithSystemError();
    bool Examine();
    bool CreateSibling();
    bool Synchronise();

    std::string m_sTarget; // the name to take; behind links, unless existing files are refused
    Existing m_existing;
    std::string m_sPath;
    std::string m_sReason;
    std::optional<unsigned> m_nMode; // permissions of the file to be replaced
    int m_nFile = -1;
};

} // namespace LS::Util
