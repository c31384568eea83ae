// The progress dialog of the main window's long commands.
#include "frame/JobProgress.h"

#include <wx/intl.h>

JobProgress::JobProgress(wxWindow* parent, const wxString& message)
    : m_dialog(wxGetTranslation("Please wait a moment..."), message, 100, parent,
               wxPD_SMOOTH | wxPD_AUTO_HIDE | wxPD_APP_MODAL | wxPD_CAN_ABORT),
      m_setter(&m_dialog, 0, 0, 100)
{
}
