// Whether the user has to answer a dialog just now.
#pragma once

#include <wx/modalhook.h>
#include <wx/weakref.h>

#include <vector>

/// Sees every modal dialog that comes up while it lives, the toolkit's own message boxes and file dialogs
/// too: these are in no list of windows.
class ModalDialogs : private wxModalDialogHook {
public:
    ModalDialogs() { Register(); }
    ModalDialogs(const ModalDialogs&) = delete;
    ModalDialogs& operator=(const ModalDialogs&) = delete;
    ~ModalDialogs() override { Unregister(); }

    bool IsAnyUp() const;

protected:
    int Enter(wxDialog* dialog) override;
    void Exit(wxDialog* dialog) override;

private:
    // Weak, since a dialog that another hook answers comes here but never leaves.
    std::vector<wxWeakRef<wxDialog>> m_vDialogs;
};
