// Saves a tone-mapped picture in one of the ordinary 8-bit formats.
#pragma once

#include <string>

#include <wx/image.h>

namespace LS::Util {
class ReplacedFile;
}

enum class LdrFormat { Jpeg, Png, Tiff, Bmp, Targa };

/// Each format looks at its own.
struct LdrOptions {
    int nQuality = 95;         ///< JPEG: 0 to 100; 100 sets nothing, so the library's default is taken
    unsigned nCompression = 2; ///< TIFF: as WriteLdrTiff takes it
    bool bSixteenBit = false;  ///< TIFF: without effect on the 8-bit pictures of this program
};

enum class LdrOutcome {
    Saved,
    Failed,
    OutOfMemory, ///< no room for the pixels in the form that the TIFF writer needs
    Exception,   ///< something was thrown while writing
};

/// Writes a picture beside the wanted name and moves it there when it is whole and on the disk. Whatever the
/// failure, a file that had the name keeps its content, nothing else is left, and the reason is in the log.
///
/// Except for TIFF the bytes are those of wxImage::SaveFile, whose handlers need not be registered for it.
/// @param image  a JPEG quality is set on it as an option, since a copy of the picture would take its memory
/// @param sPath  in the file system's bytes; what may stand there is told at LS::Util::ReplacedFile
LdrOutcome SaveLdr(wxImage& image, const std::string& sPath, LdrFormat format,
                   const LdrOptions& options = {});

/// The same without the last step, for a caller that commits the file later, with others perhaps.
LdrOutcome WriteLdr(wxImage& image, LS::Util::ReplacedFile& file, LdrFormat format,
                    const LdrOptions& options = {});
