// Where the working files of one run live.
#pragma once

#include <string>
#include <vector>

/// A fresh private folder, which becomes the process's cache folder and is removed with all that it holds.
///
/// It is private also where the user names a folder, since the engine empties its cache folder at exit.
class WorkFolder {
public:
    WorkFolder() = default;
    WorkFolder(const WorkFolder&) = delete;
    WorkFolder& operator=(const WorkFolder&) = delete;
    ~WorkFolder();

    /// Makes it below sParent, or in the temporary directory if that is empty.
    /// @return what went wrong, naming the folder; empty if it is there
    std::string Create(const std::string& sParent);

    std::string File(const std::string& sName) const; ///< a path in it

    /// Whether a name is still free in the folder that Keep moves to.
    bool CanKeep(const std::string& sName) const;

    /// Moves a file of this folder to the folder that the user named.
    /// @return what went wrong; empty if it is moved
    std::string Keep(const std::string& sName);

private:
    std::string m_sParent;
    std::string m_sPath; ///< empty until created
};
