// The progress dialog and the image button in their states.
#include "Widgets/lsProgressDialog.h"
#include "Widgets/lsRadioButton.h"
#include "tests/gallery/Gallery.h"

#include <wx/artprov.h>
#include <wx/frame.h>
#include <wx/panel.h>
#include <wx/sizer.h>
#include <wx/stattext.h>

#include <functional>

namespace LS::Gallery {

namespace {

using Widgets::lsProgressDialog;
using Widgets::lsRadioButton;

constexpr int JOB = wxPD_CAN_ABORT | wxPD_APP_MODAL | wxPD_AUTO_HIDE | wxPD_SMOOTH;
constexpr int ALL = JOB | wxPD_ELAPSED_TIME | wxPD_ESTIMATED_TIME | wxPD_REMAINING_TIME | wxPD_CAN_SKIP;

/// A dialog that is brought into its state once the program runs.
lsProgressDialog* Dialog(int nStyle, const std::function<void(lsProgressDialog&)>& state,
                         const wxString& message = "Creating HDR Image")
{
    auto* const dialog = new lsProgressDialog("Please wait a moment...", message, 100, nullptr, nStyle);
    dialog->CallAfter([=] { state(*dialog); });
    return dialog;
}

void Press(lsProgressDialog& dialog, int nId)
{
    wxCommandEvent event(wxEVT_BUTTON, nId);
    dialog.GetEventHandler()->ProcessEvent(event);
}

wxTopLevelWindow* Start()
{
    return Dialog(JOB, [](lsProgressDialog&) {});
}

wxTopLevelWindow* Running()
{
    return Dialog(JOB, [](lsProgressDialog& dialog) { dialog.Update(45); });
}

wxTopLevelWindow* AllRows()
{
    return Dialog(ALL, [](lsProgressDialog& dialog) {
        wxMilliSleep(1100);
        dialog.Update(45);
    });
}

wxTopLevelWindow* Unknown()
{
    return Dialog(ALL, [](lsProgressDialog& dialog) { dialog.Pulse("Counting the images"); });
}

wxTopLevelWindow* Skipped()
{
    return Dialog(JOB | wxPD_CAN_SKIP, [](lsProgressDialog& dialog) {
        dialog.Update(45);
        Press(dialog, 32000);
    });
}

wxTopLevelWindow* Cancelled()
{
    return Dialog(JOB, [](lsProgressDialog& dialog) {
        dialog.Update(45);
        Press(dialog, wxID_CANCEL);
    });
}

wxTopLevelWindow* Done()
{
    return Dialog(JOB & ~wxPD_AUTO_HIDE, [](lsProgressDialog& dialog) { dialog.Update(100); });
}

wxTopLevelWindow* LongMessage()
{
    return Dialog(
        wxPD_APP_MODAL | wxPD_AUTO_HIDE, [](lsProgressDialog& dialog) { dialog.Update(45); },
        "Creating HDR Image of a series with a long name that needs a wide window");
}

wxBitmap Picture()
{
    return wxArtProvider::GetBitmap(wxART_NEW, wxART_BUTTON, wxSize(24, 24));
}

/// A frame whose rows are a caption and buttons.
class ButtonFrame : public wxFrame {
public:
    explicit ButtonFrame(const wxString& title)
        : wxFrame(nullptr, wxID_ANY, title), m_panel(new wxPanel(this)),
          m_rows(new wxFlexGridSizer(2, 12, 16))
    {
        auto* const top = new wxBoxSizer(wxVERTICAL);
        top->Add(m_rows, 0, wxALL, 16);
        m_panel->SetSizer(top);
    }

    /// @param state  brings a button into its state
    void AddRow(const wxString& caption, long nStyle, const wxString& label,
                const std::function<void(lsRadioButton&)>& state = {})
    {
        auto* const button = new lsRadioButton(m_panel, wxID_ANY, Picture(), wxDefaultPosition, wxDefaultSize,
                                               nStyle, caption);
        if (!label.empty())
            button->SetLabel(label);
        button->SetMargins(wxSize(4, 4), true);
        m_rows->Add(new wxStaticText(m_panel, wxID_ANY, caption), 0, wxALIGN_CENTER_VERTICAL);
        m_rows->Add(button);
        if (state)
            button->CallAfter([=] { state(*button); });
    }

    wxTopLevelWindow* Fitted()
    {
        m_panel->GetSizer()->SetSizeHints(this);
        return this;
    }

private:
    wxPanel* m_panel;
    wxFlexGridSizer* m_rows;
};

void Hover(lsRadioButton& button)
{
    wxMouseEvent event(wxEVT_ENTER_WINDOW);
    button.GetEventHandler()->ProcessEvent(event);
}

wxTopLevelWindow* ButtonStates()
{
    auto* const frame = new ButtonFrame("Image button: states");
    frame->AddRow("normal", lsRB_PUSH, "");
    frame->AddRow("under the mouse", lsRB_PUSH, "", Hover);
    frame->AddRow("pressed", lsRB_TOGGLE, "", [](lsRadioButton& button) { button.SetValue(true); });
    frame->AddRow("pressed, under the mouse", lsRB_TOGGLE | lsRB_GROUP, "", [](lsRadioButton& button) {
        Hover(button);
        button.SetValue(true);
    });
    frame->AddRow("disabled", lsRB_PUSH, "", [](lsRadioButton& button) { button.Disable(); });
    frame->AddRow("disabled, with label", lsRB_PUSH | lsRB_LABEL_RIGHT, "Label",
                  [](lsRadioButton& button) { button.Disable(); });
    frame->AddRow("focused", lsRB_PUSH | lsRB_LABEL_RIGHT, "Label",
                  [](lsRadioButton& button) { button.SetFocus(); });
    return frame->Fitted();
}

wxTopLevelWindow* ButtonLayouts()
{
    auto* const frame = new ButtonFrame("Image button: layouts");
    frame->AddRow("label left", lsRB_PUSH | lsRB_LABEL_LEFT, "Label", Hover);
    frame->AddRow("label right", lsRB_PUSH | lsRB_LABEL_RIGHT, "Label", Hover);
    frame->AddRow("label above", lsRB_PUSH | lsRB_LABEL_TOP, "Label", Hover);
    frame->AddRow("label below", lsRB_PUSH, "Label", Hover);
    frame->AddRow("side strip", lsRB_PUSH | lsRB_SIDE_STRIP, "", Hover);
    frame->AddRow("side strip, label right", lsRB_PUSH | lsRB_SIDE_STRIP | lsRB_LABEL_RIGHT, "Label", Hover);
    return frame->Fitted();
}

} // namespace

std::vector<Page> ProgressPages()
{
    return {
        {"progress-start", Start},
        {"progress-running", Running},
        {"progress-all-rows", AllRows},
        {"progress-unknown-length", Unknown},
        {"progress-skip", Skipped},
        {"progress-cancelled", Cancelled},
        {"progress-done", Done},
        {"progress-long-message", LongMessage},
        {"image-button-states", ButtonStates},
        {"image-button-layouts", ButtonLayouts},
    };
}

} // namespace LS::Gallery
