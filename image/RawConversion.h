// From a picture of the image library to the pixel record of the TIFF writer.
#pragma once

#include "image/RawImage.h"

#include <wx/image.h>

enum class RawConversion { Converted, Invalid, NoMemory };

/// Fills a record with 32-bit pixels A R G B, A = 255 everywhere: a mask or an alpha plane is not looked at.
///
/// Invalid is a picture without pixels; the record is then untouched. NoMemory, also the answer for pictures
/// whose sizes the record's fields can't hold, leaves an empty record.
/// @param raw  its earlier pixels aren't freed; once converted, FreeImageHandle is the caller's duty
RawConversion ConvertToRaw(const wxImage& image, RawImage& raw);
