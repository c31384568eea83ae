// An owner-drawn button with a picture: radio button, toggle or push button.
#pragma once

#include "Widgets/ImageButtonLayout.h"
#include "Widgets/RadioGroup.h"

#include <wx/bmpbndl.h>
#include <wx/control.h>
#include <wx/event.h>
#include <wx/timer.h>

#include <memory>

/// Window styles of LS::Widgets::lsRadioButton. Without lsRB_PUSH and lsRB_TOGGLE it is a radio button;
/// without a place its label stands below the picture.
enum : long {
    lsRB_LABEL_LEFT = 0x0001,
    lsRB_LABEL_RIGHT = 0x0002,
    lsRB_LABEL_TOP = 0x0004,
    lsRB_PUSH = 0x0100,       ///< down while held, fires on release
    lsRB_GROUP = 0x0200,      ///< begins a group
    lsRB_TOGGLE = 0x0400,     ///< each press flips the value
    lsRB_SIDE_STRIP = 0x2000, ///< an etched line sets a strip at the right edge apart
    lsRB_AUTOREPEAT = 0x4000  ///< with lsRB_PUSH: fires every 20 ms while held
};

/// A push button was released, a toggle pressed (its new value is the event's integer), or a held push button
/// repeats (the event's extra long is 1).
wxDECLARE_EVENT(lsEVT_RADIOBUTTON_CLICKED, wxCommandEvent);

/// A radio button that was off was pressed.
wxDECLARE_EVENT(lsEVT_RADIOBUTTON_SELECTED, wxCommandEvent);

namespace LS::Widgets {

/// A flat button with a picture and perhaps a label, raised while the mouse is over it. Radio buttons clear
/// the others of their group, which is made of neighbouring children of one parent. Space and Enter act as a
/// press and release of the mouse.
class lsRadioButton : public wxControl {
public:
    /// @param bitmap  the normal picture, or none
    /// @param size    a default width or height is replaced by the best one
    /// @param style   lsRB_ styles, added to the control's own
    /// @param toolTip names the button for those who can't see its picture
    lsRadioButton(wxWindow* parent, wxWindowID id, const wxBitmapBundle& bitmap,
                  const wxPoint& pos = wxDefaultPosition, const wxSize& size = wxDefaultSize, long style = 0,
                  const wxString& toolTip = wxEmptyString, const wxValidator& validator = wxDefaultValidator,
                  const wxString& name = "lsRadioButton");
    ~lsRadioButton() override;

    /// Sends no event. True clears the others of the group; if one of them had the focus, it comes here.
    virtual void SetValue(bool value);
    virtual bool GetValue() const { return m_value; }

    void SetLabel(const wxString& label) override;
    wxString GetLabel() const override { return m_label; }
    bool Enable(bool enable = true) override;

    void SetBitmapLabel(const wxBitmapBundle& bitmap);

    /// Without one, a chequered copy of the normal picture is made when it is first needed.
    void SetBitmapDisabled(const wxBitmapBundle& bitmap);

    /// Margins around label and picture; `fit` makes the best size the new initial size.
    void SetLabelMargin(const wxSize& size, bool fit = false);
    void SetBitmapMargin(const wxSize& size, bool fit = false);
    void SetMargins(const wxSize& size, bool fit = false);

protected:
    wxSize DoGetBestSize() const override;

private:
    ImageButtonParts Parts() const;
    wxSize Area() const;
    void PlaceParts(bool bRefresh);
    void ApplyMargins(bool bFit);

    wxBitmapBundle DisabledPicture() const;
    const wxBitmapBundle& PictureToShow();
    void PaintStrip(wxDC& dc, wxSize area) const;
    void PaintPressed(wxDC& dc, wxSize area) const;
    void PaintParts(wxDC& dc);

    GroupRole Role() const;
    void ClearGroup();
    void Press();
    void Release();
    void StartHolding();
    void StopHolding();
    void GiveUpPress();
    void SendClicked(long nExtra);
    void SendToggled();
    void SendSelected();

    void OnPaint(wxPaintEvent& event);
    void OnSize(wxSizeEvent& event);
    void OnMouse(wxMouseEvent& event);
    void OnCaptureLost(wxMouseCaptureLostEvent& event);
    void OnTimer(wxTimerEvent& event);
    void OnKeyDown(wxKeyEvent& event);
    void OnKeyUp(wxKeyEvent& event);
    void OnFocus(wxFocusEvent& event);

    wxString m_label;
    wxBitmapBundle m_bmpLabel;
    wxBitmapBundle m_bmpSelected; ///< while the value is true; optional
    wxBitmapBundle m_bmpFocus;    ///< while the mouse is over; optional
    wxBitmapBundle m_bmpDisabled; ///< made on demand if absent
    wxSize m_labelMargin{4, 4};
    wxSize m_bitmapMargin{2, 2};
    wxPoint m_bitmapPos;
    wxPoint m_labelPos;
    bool m_hover = false;
    bool m_value = false;
    std::unique_ptr<wxTimer> m_timer; ///< while an auto-repeat press is held
    bool m_keyHeld = false;
    bool m_disabledMade = false; ///< m_bmpDisabled was made from m_bmpLabel

    wxDECLARE_CLASS(lsRadioButton);
    wxDECLARE_EVENT_TABLE();
};

} // namespace LS::Widgets
