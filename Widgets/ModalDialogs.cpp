// Two looks: what the hook saw, and the list of windows for dialogs that were up before it.
#include "Widgets/ModalDialogs.h"

#include <wx/dialog.h>

#include <algorithm>

int ModalDialogs::Enter(wxDialog* dialog)
{
    m_vDialogs.emplace_back(dialog);
    return wxID_NONE;
}

void ModalDialogs::Exit(wxDialog* dialog)
{
    std::erase_if(m_vDialogs, [=](const auto& known) { return !known || known.get() == dialog; });
}

bool ModalDialogs::IsAnyUp() const
{
    const auto IsModalDialog = [](wxWindow* window) {
        const auto* dialog = dynamic_cast<wxDialog*>(window);
        return dialog && dialog->IsModal();
    };
    return std::ranges::any_of(m_vDialogs, [](const auto& known) { return known.get() != nullptr; }) ||
           std::any_of(wxTopLevelWindows.begin(), wxTopLevelWindows.end(), IsModalDialog);
}
