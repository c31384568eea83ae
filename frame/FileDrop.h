// Files dropped on a window.
#pragma once

#include <functional>
#include <utility>

#include <wx/arrstr.h>
#include <wx/dnd.h>

/// Hands dropped files on; the window that it is set on owns it.
class FileDrop : public wxFileDropTarget {
public:
    /// @param take  returns whether it takes the files. The program that they come from waits meanwhile, so
    /// it
    ///              must not ask the user anything
    explicit FileDrop(std::function<bool(const wxArrayString& paths)> take) : m_take(std::move(take)) {}

    bool OnDropFiles(wxCoord, wxCoord, const wxArrayString& paths) override { return m_take(paths); }

private:
    std::function<bool(const wxArrayString& paths)> m_take;
};
