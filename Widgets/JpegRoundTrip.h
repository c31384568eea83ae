// What JPEG compression makes of a picture.
#pragma once

#include <wx/image.h>

/// Encodes a picture as JPEG and decodes it again, all in memory. The quality is that of the picture's option
/// wxIMAGE_OPTION_QUALITY, 0 to 100.
/// @return an invalid image if the encoder refuses the picture; the reason is in the log
wxImage JpegRoundTrip(const wxImage& picture);
