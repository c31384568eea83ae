// The progress dialog of the main window's long commands.
#pragma once

#include "Widgets/lsProgressDialog.h"

/// On show as long as it lives; every other window is disabled meanwhile, and Cancel can be pressed. The
/// main window is active afterwards, unless the user turns to another program.
class JobProgress {
public:
    /// @param message  translated
    JobProgress(wxWindow* parent, const wxString& message);

    /// 0 to 100 of the whole job.
    ProgbarSetter& Setter() { return m_setter; }

private:
    LS::Widgets::lsProgressDialog m_dialog;
    ProgbarSetter m_setter;
};
