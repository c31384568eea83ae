// Two labelled lists above OK and Cancel.
#include "Widgets/TiffOptionsDlg.h"

#include <wx/button.h>
#include <wx/choice.h>
#include <wx/intl.h>
#include <wx/sizer.h>
#include <wx/stattext.h>

namespace {

constexpr int BORDER = 5;

/// Adds a label and a list with its first entry selected.
wxChoice* AddChoice(wxWindow* dialog, wxSizer* grid, const wxString& label, const wxArrayString& entries)
{
    auto* text = new wxStaticText(dialog, wxID_STATIC, label);
    grid->Add(text, wxSizerFlags().CentreVertical().Border(wxALL, BORDER));
    auto* choice = new wxChoice(dialog, wxID_ANY, wxDefaultPosition, wxDefaultSize, entries);
    choice->SetSelection(0);
    grid->Add(choice, wxSizerFlags().Expand().CentreVertical().Border(wxALL, BORDER));
    return choice;
}

} // namespace

TiffOptionsDlg::TiffOptionsDlg(wxWindow* parent, wxWindowID id, const wxString& title, const wxPoint& pos,
                               const wxSize& size, long style)
{
    SetExtraStyle(wxWS_EX_BLOCK_EVENTS);
    Create(parent, id, title, pos, size, style, wxDialogNameStr);
    CreateControls();
    GetSizer()->SetSizeHints(this);
    Centre(wxBOTH);
}

void TiffOptionsDlg::CreateControls()
{
    auto* top = new wxBoxSizer(wxVERTICAL);
    SetSizer(top);
    auto* grid = new wxFlexGridSizer(2, 0, 0);
    grid->AddGrowableCol(1); // the lists take the width that the user gives the dialog
    top->Add(grid, wxSizerFlags().Expand().Border(wxALL, BORDER));
    m_bitDepthChoice = AddChoice(this, grid, _("Bit Depth:"), {1, {_("8bits")}});
    wxArrayString compressions;
    for (const wxString& name : {_("None"), _("Deflate"), _("Packbits")})
        compressions.Add(name);
    m_compressionChoice = AddChoice(this, grid, _("Compression:"), compressions);
    top->Add(CreateButtons(), wxSizerFlags().Right().Border(wxALL, BORDER));
}

wxSizer* TiffOptionsDlg::CreateButtons()
{
    auto* buttons = new wxStdDialogButtonSizer;
    auto* ok = new wxButton(this, wxID_OK, _("&OK"));
    ok->SetDefault();
    buttons->AddButton(ok);
    buttons->AddButton(new wxButton(this, wxID_CANCEL, _("&Cancel")));
    buttons->Realize();
    return buttons;
}
