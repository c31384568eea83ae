// Files dropped on a window.
#pragma once

#include <functional>
#include <utility>

#include <wx/arrstr.h>
#include <wx/dnd.h>

/// Hands dropped files on; the window that it is set on owns it.
class FileDrop : public wxFileDropTarget {
public:
    explicit FileDrop(std::function<void(const wxArrayString& paths)> take) : m_take(std::move(take)) {}

    bool OnDropFiles(wxCoord, wxCoord, const wxArrayString& paths) override
    {
        m_take(paths);
        return true;
    }

private:
    std::function<void(const wxArrayString& paths)> m_take;
};
