// A JPEG file that is written and read without touching the disk.
#include "Widgets/JpegRoundTrip.h"

#include <wx/mstream.h>

wxImage JpegRoundTrip(const wxImage& picture)
{
    wxMemoryOutputStream encoded;
    if (!picture.IsOk() || !picture.SaveFile(encoded, wxBITMAP_TYPE_JPEG))
        return {};
    wxMemoryInputStream bytes(encoded);
    wxImage decoded;
    decoded.LoadFile(bytes, wxBITMAP_TYPE_ANY, -1);
    return decoded;
}
