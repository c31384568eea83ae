// Painting, mouse and keyboard of the image button.
#include "Widgets/lsRadioButton.h"

#include "Widgets/Background.h"
#include "Widgets/DisabledPicture.h"

#include <wx/dcclient.h>
#include <wx/renderer.h>
#include <wx/settings.h>

#include <utility>
#include <vector>

wxDEFINE_EVENT(lsEVT_RADIOBUTTON_CLICKED, wxCommandEvent);
wxDEFINE_EVENT(lsEVT_RADIOBUTTON_SELECTED, wxCommandEvent);

namespace LS::Widgets {

namespace {

constexpr int STRIP_WIDTH = 7;
constexpr int REPEAT_MS = 20;
constexpr int FOCUS_INSET = 1;

wxPen GreyPen()
{
    return {wxColour(128, 128, 128)};
}

void DrawTopLeftEdge(wxDC& dc, wxSize area)
{
    dc.DrawLine(0, 0, area.x - 1, 0);
    dc.DrawLine(0, 0, 0, area.y);
}

void DrawRaisedEdge(wxDC& dc, wxSize area)
{
    dc.SetBrush(*wxTRANSPARENT_BRUSH);
    dc.SetPen(*wxWHITE_PEN);
    DrawTopLeftEdge(dc, area);
    dc.SetPen(GreyPen());
    dc.DrawLine(area.x - 1, 0, area.x - 1, area.y);
    dc.DrawLine(1, area.y - 1, area.x - 1, area.y - 1);
}

bool IsPressKey(const wxKeyEvent& event)
{
    const int nKey = event.GetKeyCode();
    return !event.HasAnyModifiers() && (nKey == WXK_SPACE || nKey == WXK_RETURN || nKey == WXK_NUMPAD_ENTER);
}

} // namespace

wxIMPLEMENT_CLASS(lsRadioButton, wxControl);

// clang-format off
wxBEGIN_EVENT_TABLE(lsRadioButton, wxControl)
    EVT_PAINT(lsRadioButton::OnPaint)
    EVT_SIZE(lsRadioButton::OnSize)
    EVT_MOUSE_EVENTS(lsRadioButton::OnMouse)
    EVT_MOUSE_CAPTURE_LOST(lsRadioButton::OnCaptureLost)
    EVT_TIMER(wxID_ANY, lsRadioButton::OnTimer)
    EVT_KEY_DOWN(lsRadioButton::OnKeyDown)
    EVT_KEY_UP(lsRadioButton::OnKeyUp)
    EVT_SET_FOCUS(lsRadioButton::OnFocus)
    EVT_KILL_FOCUS(lsRadioButton::OnFocus)
wxEND_EVENT_TABLE()
// clang-format on

lsRadioButton::lsRadioButton(wxWindow* parent, wxWindowID id, const wxBitmapBundle& bitmap,
                             const wxPoint& pos, const wxSize& size, long style, const wxString& toolTip,
                             const wxValidator& validator, const wxString& name)
    : m_bmpLabel(bitmap)
{
    SetBackgroundStyle(wxBG_STYLE_PAINT); // the toolkit wants to know before the window exists
    Create(parent, id, pos, size, wxBORDER_NONE | wxCLIP_CHILDREN, validator, name);
    SetWindowStyle(GetWindowStyle() | style);
    // A parent in the theme's colours shows through; what it names as its colour isn't quite what it paints.
    if (parent->UseBackgroundColour())
        SetBackgroundColour(parent->GetBackgroundColour());
    if (parent->UseForegroundColour())
        SetForegroundColour(parent->GetForegroundColour());
    SetFont(parent->GetFont());
    SetToolTip(toolTip);
    wxSize initial = size;
    initial.SetDefaults(DoGetBestSize());
    SetInitialSize(initial);
    PlaceParts(false);
}

lsRadioButton::~lsRadioButton()
{
    StopHolding();
}

void lsRadioButton::SetLabel(const wxString& label)
{
    m_label = label;
    wxControl::SetLabel(label); // the name that the base gives to assistive programs
    InvalidateBestSize();
    PlaceParts(true);
}

bool lsRadioButton::Enable(bool enable)
{
    const bool bChanged = wxControl::Enable(enable);
    if (!bChanged)
        return false;
    // A disabled button would never hear of its release.
    if (!enable && HasCapture())
        GiveUpPress();
    Refresh();
    return true;
}

void lsRadioButton::SetBitmapLabel(const wxBitmapBundle& bitmap)
{
    m_bmpLabel = bitmap;
    if (m_disabledMade)
        m_bmpDisabled = wxBitmapBundle();
    InvalidateBestSize();
    PlaceParts(true);
}

void lsRadioButton::SetBitmapDisabled(const wxBitmapBundle& bitmap)
{
    m_bmpDisabled = bitmap;
    m_disabledMade = false;
    PlaceParts(true);
}

void lsRadioButton::SetLabelMargin(const wxSize& size, bool fit)
{
    m_labelMargin = size;
    ApplyMargins(fit);
}

void lsRadioButton::SetBitmapMargin(const wxSize& size, bool fit)
{
    m_bitmapMargin = size;
    ApplyMargins(fit);
}

void lsRadioButton::SetMargins(const wxSize& size, bool fit)
{
    m_labelMargin = m_bitmapMargin = size;
    ApplyMargins(fit);
}

void lsRadioButton::ApplyMargins(bool bFit)
{
    InvalidateBestSize();
    PlaceParts(true);
    if (bFit)
        SetInitialSize(DoGetBestSize()); // GetBestSize never goes below the initial size so far
}

ImageButtonParts lsRadioButton::Parts() const
{
    ImageButtonParts parts;
    if (HasFlag(lsRB_LABEL_LEFT))
        parts.place = LabelPlace::Left;
    else if (HasFlag(lsRB_LABEL_RIGHT))
        parts.place = LabelPlace::Right;
    else if (HasFlag(lsRB_LABEL_TOP))
        parts.place = LabelPlace::Top;
    if (m_bmpLabel.IsOk())
        parts.picture = m_bmpLabel.GetPreferredLogicalSizeFor(this);
    if (!m_label.empty())
        parts.label = GetTextExtent(m_label);
    parts.pictureMargin = m_bitmapMargin;
    parts.labelMargin = m_labelMargin;
    return parts;
}

/// The client size without the strip.
wxSize lsRadioButton::Area() const
{
    wxSize area = GetClientSize();
    if (HasFlag(lsRB_SIDE_STRIP))
        area.x -= STRIP_WIDTH;
    return area;
}

wxSize lsRadioButton::DoGetBestSize() const
{
    wxSize best = ImageButtonBestSize(Parts());
    if (HasFlag(lsRB_SIDE_STRIP))
        best.x += STRIP_WIDTH;
    return best;
}

void lsRadioButton::PlaceParts(bool bRefresh)
{
    const ImageButtonPositions positions = PlaceImageButton(Parts(), Area());
    m_bitmapPos = positions.picture;
    m_labelPos = positions.label;
    if (bRefresh)
        Refresh(false);
}

wxBitmapBundle lsRadioButton::DisabledPicture() const
{
    if (!m_bmpLabel.IsOk())
        return {};
    const wxBitmap normal = m_bmpLabel.GetBitmap(wxDefaultSize);
    const wxImage chequered = ChequeredPicture(normal.ConvertToImage(), GetBackgroundColour());
    return wxBitmap(chequered, wxBITMAP_SCREEN_DEPTH, normal.GetScaleFactor());
}

const wxBitmapBundle& lsRadioButton::PictureToShow()
{
    if (IsEnabled()) {
        if (GetValue() && m_bmpSelected.IsOk())
            return m_bmpSelected;
        return m_hover && m_bmpFocus.IsOk() ? m_bmpFocus : m_bmpLabel;
    }
    if (!m_bmpDisabled.IsOk()) {
        m_bmpDisabled = DisabledPicture();
        m_disabledMade = true;
    }
    return m_bmpDisabled.IsOk() ? m_bmpDisabled : m_bmpLabel;
}

void lsRadioButton::OnPaint(wxPaintEvent&)
{
    wxPaintDC dc(this);
    PaintBackground(dc, *this);
    const wxSize area = Area();
    if (HasFlag(lsRB_SIDE_STRIP))
        PaintStrip(dc, area);
    if (m_hover && IsEnabled())
        DrawRaisedEdge(dc, area);
    if (m_value && IsEnabled())
        PaintPressed(dc, area);
    PaintParts(dc);
    dc.SetPen(wxNullPen);
    dc.SetBrush(wxNullBrush);
    dc.SetBackground(wxNullBrush);
    if (HasFocus())
        wxRendererNative::Get().DrawFocusRect(this, dc, wxRect(area).Deflate(FOCUS_INSET));
}

void lsRadioButton::PaintStrip(wxDC& dc, wxSize area) const
{
    const int nTop = m_bitmapMargin.y, nBottom = area.y - m_bitmapMargin.y;
    dc.SetBrush(*wxTRANSPARENT_BRUSH);
    dc.SetPen(GreyPen());
    dc.DrawLine(area.x + 5, nTop, area.x + 5, nBottom);
    dc.SetPen(*wxWHITE_PEN);
    dc.DrawLine(area.x + 6, nTop, area.x + 6, nBottom);
}

void lsRadioButton::PaintPressed(wxDC& dc, wxSize area) const
{
    dc.SetBackground(*wxWHITE_BRUSH);
    dc.SetBrush(*wxWHITE_BRUSH);
    dc.SetPen(*wxTRANSPARENT_PEN);
    dc.DrawRectangle(wxPoint(0, 0), area);
    dc.SetPen(GreyPen());
    DrawTopLeftEdge(dc, area);
}

void lsRadioButton::PaintParts(wxDC& dc)
{
    const wxBitmapBundle& picture = PictureToShow();
    if (picture.IsOk())
        dc.DrawBitmap(picture.GetBitmapFor(this), m_bitmapPos, true);
    if (m_label.empty())
        return;
    dc.SetFont(GetFont());
    dc.SetTextBackground(GetBackgroundColour());
    dc.SetTextForeground(IsEnabled() ? GetForegroundColour()
                                     : wxSystemSettings::GetColour(wxSYS_COLOUR_GRAYTEXT));
    dc.DrawText(m_label, m_labelPos);
}

void lsRadioButton::OnSize(wxSizeEvent& event)
{
    PlaceParts(true);
    event.Skip();
}

void lsRadioButton::SetValue(bool value)
{
    m_value = value;
    if (value)
        ClearGroup();
    Refresh();
}

GroupRole lsRadioButton::Role() const
{
    return {HasFlag(lsRB_PUSH), HasFlag(lsRB_GROUP), HasFlag(lsRB_TOGGLE)};
}

void lsRadioButton::ClearGroup()
{
    std::vector<lsRadioButton*> vButtons;
    std::vector<GroupRole> vRoles;
    std::size_t nOwn = 0;
    for (wxWindow* const pSibling : GetParent()->GetChildren()) {
        auto* const pButton = dynamic_cast<lsRadioButton*>(pSibling); // wxDynamicCast casts before it looks
        if (!pButton)
            continue;
        if (pButton == this)
            nOwn = vButtons.size();
        vButtons.push_back(pButton);
        vRoles.push_back(pButton->Role());
    }

    bool bTakeFocus = false;
    for (const std::size_t i : ButtonsToClear(vRoles, nOwn)) {
        bTakeFocus = bTakeFocus || vButtons[i]->HasFocus();
        vButtons[i]->SetValue(false);
    }
    if (bTakeFocus)
        SetFocus();
}

void lsRadioButton::OnMouse(wxMouseEvent& event)
{
    if (!IsEnabled())
        return;
    if (event.LeftDown()) {
        Press();
    } else if (event.LeftUp()) {
        Release();
    } else if (event.Entering()) {
        m_hover = true;
        Refresh(false);
    } else if (event.Leaving()) {
        m_hover = false;
        Refresh();
    } else {
        event.Skip(); // a turn of the wheel belongs to the parent
    }
}

void lsRadioButton::Press()
{
    if (HasFlag(lsRB_TOGGLE)) {
        SetValue(!m_value);
        SendToggled();
        return;
    }
    if (GetValue())
        return;
    SetValue(true);
    if (HasFlag(lsRB_PUSH) && !HasCapture())
        StartHolding();
    else
        SendSelected();
    Refresh(false);
}

void lsRadioButton::Release()
{
    if (!HasFlag(lsRB_PUSH) || !GetValue())
        return;
    SetValue(false);
    SetFocus();
    StopHolding();
    SendClicked(0);
    Refresh(false);
}

void lsRadioButton::StartHolding()
{
    CaptureMouse();
    if (HasFlag(lsRB_AUTOREPEAT) && !m_timer) {
        m_timer = std::make_unique<wxTimer>(this);
        m_timer->Start(REPEAT_MS);
    }
}

void lsRadioButton::StopHolding()
{
    if (HasCapture())
        ReleaseMouse();
    m_timer.reset();
}

/// Ends a press whose release will never come. It fires nothing.
void lsRadioButton::GiveUpPress()
{
    StopHolding();
    SetValue(false);
}

void lsRadioButton::OnCaptureLost(wxMouseCaptureLostEvent&)
{
    GiveUpPress();
}

void lsRadioButton::OnTimer(wxTimerEvent&)
{
    if (IsEnabled())
        SendClicked(1);
    else
        GiveUpPress(); // a window above was disabled
}

void lsRadioButton::OnKeyDown(wxKeyEvent& event)
{
    if (!IsPressKey(event) || !IsEnabled()) {
        event.Skip();
        return;
    }
    // A key that is held comes again and again. It doesn't repeat a command that was meant once.
    if (std::exchange(m_keyHeld, true))
        return;
    Press();
    Release();
}

void lsRadioButton::OnKeyUp(wxKeyEvent& event)
{
    m_keyHeld = false;
    event.Skip();
}

void lsRadioButton::OnFocus(wxFocusEvent& event)
{
    if (event.GetEventType() == wxEVT_KILL_FOCUS)
        m_keyHeld = false; // the key's release goes elsewhere
    Refresh();
    event.Skip();
}

void lsRadioButton::SendClicked(long nExtra)
{
    wxCommandEvent event(lsEVT_RADIOBUTTON_CLICKED, GetId());
    event.SetEventObject(this);
    event.SetExtraLong(nExtra);
    GetEventHandler()->ProcessEvent(event);
}

void lsRadioButton::SendToggled()
{
    wxCommandEvent event(lsEVT_RADIOBUTTON_CLICKED, GetId());
    event.SetEventObject(this);
    event.SetInt(m_value);
    GetEventHandler()->ProcessEvent(event);
}

void lsRadioButton::SendSelected()
{
    wxCommandEvent event(lsEVT_RADIOBUTTON_SELECTED, GetId());
    event.SetEventObject(this);
    GetEventHandler()->ProcessEvent(event);
}

} // namespace LS::Widgets
