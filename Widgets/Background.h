// What an owner-drawn control has to paint where its parent seems to show through.
#pragma once

class wxDC;
class wxWindow;

namespace LS::Widgets {

/// Fills a control with the colour that the windows above it show. Without this old pixels stay wherever the
/// control has a window of its own on the screen, which some input modules of GTK give to what has the focus.
void PaintBackground(wxDC& dc, const wxWindow& control);

} // namespace LS::Widgets
