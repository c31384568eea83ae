// Whether a dialog is up.
#include "Widgets/ModalDialogs.h"

#include <gtest/gtest.h>
#include <wx/dialog.h>

TEST(ModalDialogs, OneThatWasUpBeforeIsNoticed)
{
    wxDialog dialog(nullptr, wxID_ANY, "Up");
    dialog.CallAfter([&dialog] {
        EXPECT_TRUE(ModalDialogs().IsAnyUp());
        dialog.EndModal(wxID_OK);
    });
    dialog.ShowModal();
    EXPECT_FALSE(ModalDialogs().IsAnyUp());
}
