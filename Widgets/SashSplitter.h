// A splitter with a thick sash and a handle that collapses the second pane.
#pragma once

#include "Widgets/SashHandle.h"

#include <wx/splitter.h>

namespace LS::Widgets {

/// Gives the sashes of all wxSashSplitterWindow objects their width of 8 pixels; the toolkit has one width
/// for all splitters otherwise. To be called once, before the first window is made.
void WidenSashes();

/// A splitter with a grey sash. In a vertical split the sash carries a handle: a click on it collapses the
/// second pane to one pixel, and the next one brings it back at the minimum pane size.
class wxSashSplitterWindow : public wxSplitterWindow {
public:
    explicit wxSashSplitterWindow(wxWindow* parent, wxWindowID id = wxID_ANY,
                                  const wxPoint& pos = wxDefaultPosition, const wxSize& size = wxDefaultSize,
                                  long style = wxSP_3D | wxCLIP_CHILDREN,
                                  const wxString& name = "sashsplitter");

    /// Whether the second pane is open.
    bool IsExpanded() const { return m_expanded; }

    void DrawSash(wxDC& dc) override;
    void DrawSashTracker(int x, int y) override;
    bool SashHitTest(int x, int y) override;

private:
    void OnMouse(wxMouseEvent& event);
    void OnCaptureLost(wxMouseCaptureLostEvent& event);

    bool HasHandle() const;
    bool IsOverHandle(wxPoint at) const;
    void TogglePane();

    int m_handleWidth = SASH_HANDLE_WIDTH;
    int m_handleHeight = SASH_HANDLE_HEIGHT;
    bool m_expanded = true;
    int m_savedPaneSize = 0;

    wxDECLARE_EVENT_TABLE();
};

} // namespace LS::Widgets
