// A picture with what compression finds hard: soft gradients, fine texture and sharp text.
#pragma once

#include <wx/image.h>

/// The same picture at each call; needs a running application for its text.
wxImage SamplePicture(wxSize size);
