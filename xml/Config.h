// The program's settings and the file that keeps them.
#pragma once

#include "Util/Paths.h"
#include "xml/XmlNode.h"

#include <cstdint>
#include <string>

#include <wx/string.h>

/// The settings, read and written as plain members. The file "lsConfigHDR.xml" beside the executable is read
/// at the start and written again when this object goes; in between only the members change. For the main
/// thread only.
class Config {
public:
    /// The one object; the first call makes it, with the defaults.
    static Config* Instance();

    /// Deletes it, which writes the file; nothing if there is none.
    static void DestroyInstance();

    Config(); ///< the defaults
    Config(const Config&) = delete;
    Config& operator=(const Config&) = delete;
    virtual ~Config(); ///< writes the file if Load has said where; a failure is only logged

    /// Takes the settings from the file. A missing or broken file, one of a later program and one of version
    /// 5 are replaced with the defaults; one of another older version stays as it is, unread, until the end.
    /// @param sFolder  where the file is
    /// @return false, with a message in the log, if the file had to be written and could not be
    bool Load(const std::wstring& sFolder = LS::Util::ProgramFolder());

    /// Takes every key from the tree; a member whose key is missing or no number keeps its value. Values out
    /// of range pass. @return true
    bool Read();

    /// Writes the file anew from the members. @return false before Load too
    bool Write();

    /// As Write, with a message in the log if it fails.
    bool Overwrite();

    bool Upgrade(); ///< what a file of version 5 needs: nothing yet. @return true

    LS::Util::Handle<LS::Xml::XmlNode> m_root; ///< null until Load
    double m_version = 6.0;
    wxString m_language = "English (U.S.)"; ///< the English description of the language in use
    wxString m_lastImagePath;               ///< the folder of the last photographs opened
    wxString m_imageType = "JPEG Image Format (*.jpeg;*.jpg)";
    wxString m_fullName; ///< the folder of the last result saved, with a separator at its end
    std::int32_t m_jpegCompression = 95;
    std::int32_t m_bitDepth = 8;
    std::int32_t m_compressionType = 2;
};
