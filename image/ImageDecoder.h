// Decodes photographs, safely also where the file is damaged or hostile.
#pragma once

#include "image/Orientation.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>

#include <wx/image.h>

/// Makes the image library know all its formats; further calls do nothing. To be called once before the
/// first decode, after the library is initialised. A wxApp does that; a program without windows holds a
/// wxInitializer for as long as it uses images, which needs no display.
void RegisterImageHandlers();

/// The largest picture that is decoded, in pixels: 512 megapixels, counted in units of 2^20.
constexpr std::int64_t MAX_DECODED_PIXELS = std::int64_t{512} << 20;

enum class DecodeOutcome {
    Decoded,
    Missing, ///< no regular file has this path
    Undecodable
};

struct DecodedImage {
    DecodeOutcome outcome;
    wxImage image;       ///< valid only if decoded
    std::string sReason; ///< why not, in words for a log; empty if decoded
};

/// Decodes a file in any format of the image library, found by its content and not by its extension.
///
/// JPEG, TIFF and PNG are decoded here, every other format in a child process, since the library's other
/// decoders can crash on damaged files; a crash, or no answer in time, means undecodable. What could take
/// longer than its size in pixels tells goes there too: a JPEG of many scans or of several huge ones, a PNG
/// that is cut or holds much data, a TIFF of an unusual layout, an oversized file. A header that asks for
/// more than MAX_DECODED_PIXELS is undecodable. A JPEG that ends early is decoded, with grey rows for the
/// rest. The picture comes upright, turned as its Exif data asks. What the library says meanwhile doesn't
/// reach the log; it becomes the reason if the decoding fails.
/// @param sPath      in the file system's bytes; only a regular file is opened
/// @param timeLimit  how long a child process may take, besides a second for each 4 MB of a file that has as
///                   much as 8 megapixels for each
DecodedImage DecodeImage(const std::string& sPath,
                         std::chrono::milliseconds timeLimit = std::chrono::seconds(10));

/// The same for a picture that lies in memory, such as a thumbnail inside another file.
/// @param type  JPEG or TIFF: anything else in the bytes is undecodable. wxBITMAP_TYPE_ANY: any format
/// @param orientation  how the stored picture lies; its own metadata isn't read
DecodedImage DecodeBytes(const void* pBytes, std::size_t nBytes, wxBitmapType type,
                         Orientation orientation = Orientation::Upright);
