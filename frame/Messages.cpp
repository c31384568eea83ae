// Message boxes of the main window.
#include "frame/Messages.h"

#include <wx/intl.h>
#include <wx/msgdlg.h>

int ShowMessage(const wxString& text, long style)
{
    return wxMessageBox(text, wxGetTranslation("Tolvanic Lumistrand"), style);
}

void ShowError(const wxString& text)
{
    ShowMessage(text, wxOK | wxICON_ERROR);
}
