// Decodes photographs, safely also where the file is damaged or hostile.
#pragma once

#include <string>

#include <wx/image.h>

enum class DecodeOutcome { Decoded, Missing, Undecodable };

struct DecodedImage {
    DecodeOutcome outcome;
    wxImage image;       ///< valid only if decoded
    std::string sReason; ///< why not, in words for a log; empty if decoded
};

/// Decodes a file in any format of the image library, found by its content and not by its extension.
///
/// JPEG, TIFF and PNG are decoded here, every other format in a child process, since the library's other
/// decoders can crash on damaged files; a crash, or no answer in time, means undecodable. So does a header
/// that asks for more than 512 megapixels. A JPEG that ends early is decoded, with grey rows for the rest.
/// @param sPath  in the file system's bytes; only a regular file is opened
DecodedImage DecodeImage(const std::string& sPath);
