// The save dialog without its window: formats, names and paths.
#pragma once

#include <array>
#include <cstddef>
#include <optional>

#include <wx/string.h>

/// What the link of a format shows and opens.
enum class SaveOption { None, Quality, BitDepth };

/// A format of the dialog's list.
struct SaveFormat {
    const char* szText;            ///< also what is stored and compared, so never translated
    const char* szProposedSuffix;  ///< with its dot: ends the proposed name
    const char* szForcedExtension; ///< without a dot: what a saved file's name has
    SaveOption option;
};

/// The list in its order.
constexpr std::array<SaveFormat, 4> SAVE_FORMATS = {{
    {"JPEG Image Format (*.jpeg;*.jpg)", ".jpg", "jpg", SaveOption::Quality},
    {"Portable Network Graphics (*.png)", ".png", "png", SaveOption::None},
    {"Tiff Image Format (*.tiff;*.tif)", ".tiff", "tif", SaveOption::BitDepth},
    {"Windows Bitmap (*.bmp)", ".bmp", "bmp", SaveOption::None},
}};

/// Not in the list, but known where the settings have it.
constexpr const char* TARGA_FORMAT = "Targa Files (*.tga)";

/// How many saves this run of the program has agreed on, which numbers the proposals. Not for threads.
class SaveCounter {
public:
    static unsigned Count() { return s_nSaves; }
    static void Add() { ++s_nSaves; }

private:
    inline static unsigned s_nSaves = 0;
};

/// The path that the dialog opens with: the folder as it is stored, with its separator, the number's name and
/// the suffix of the format. Besides those of the list TARGA_FORMAT has one; other texts have none.
wxString ProposedPath(const wxString& folder, unsigned nNumber, const wxString& format);

/// Whether a link shows the value that the dialog opened with, or one that an options dialog has confirmed.
enum class LinkMoment { Opened, Confirmed };

/// The text of the link, beginning with the translated "Quality:"; empty for a format without options.
/// @param nValue  quality in percent, or bits per channel
wxString LinkText(SaveOption option, int nValue, LinkMoment moment);

/// How many characters stand before the last "." of a name; none without one.
std::optional<std::size_t> StemLength(const wxString& name);

/// The characters that no file name may have: * ? \ / : " < > |
extern const char* const EXCLUDED_CHARACTERS;

/// Whether a typed or pasted name can be a file's: no excluded character, and something that doesn't begin
/// with "." before the extension.
bool IsFileName(const wxString& name);

/// A name or path with another extension. What stands behind the last "." counts as the old one, except where
/// the name begins with that ".".
wxString WithExtension(const wxString& path, const wxString& extension);

/// The same for a name or path that has no extension, or ends in "."; any other one stays as it is.
wxString WithSomeExtension(const wxString& path, const wxString& extension);
