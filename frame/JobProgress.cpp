// The progress dialog of the main window's long commands.
#include "frame/JobProgress.h"

#include <wx/intl.h>

namespace {

/// The user has just answered a dialog of ours. Where a question goes together with the dialog below it, the
/// window manager finds both gone and makes another program active.
wxWindow* MadeActive(wxWindow* window)
{
    window->Raise();
    return window;
}

} // namespace

JobProgress::JobProgress(wxWindow* parent, const wxString& message)
    : m_dialog(wxGetTranslation("Please wait a moment..."), message, 100, MadeActive(parent),
               wxPD_SMOOTH | wxPD_AUTO_HIDE | wxPD_APP_MODAL | wxPD_CAN_ABORT),
      m_setter(&m_dialog, 0, 0, 100)
{
}
