// The main window under test: its controls by id, its message boxes, and series to load.
#pragma once

#include "frame/LumiStrandHDRFrm.h"
#include "tests/support/Gui.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <deque>
#include <string>
#include <vector>

#include <wx/grid.h>

namespace LS::Tests {

/// A message box that is expected, and its answer.
struct Box {
    wxString text;
    long style;
    int nAnswer; ///< wxID_OK, wxID_YES, wxID_NO, wxID_CANCEL
};

/// Answers the message boxes that are announced, in their order; any other modal window fails the test.
class ExpectedBoxes {
public:
    explicit ExpectedBoxes(std::vector<Box> boxes);
    ~ExpectedBoxes(); ///< fails the test if one didn't come

private:
    int Answer(wxDialog& dialog);

    std::deque<Box> m_boxes;
    ModalAnswer m_answer;
};

/// A shown main window without a series.
class FrameTest : public testing::Test {
protected:
    FrameTest();
    ~FrameTest() override;

    template <typename Control> Control& Find(int nId) const
    {
        auto* const control = dynamic_cast<Control*>(m_frame->FindWindow(nId));
        if (!control)
            throw std::runtime_error("no such control");
        return *control;
    }
    template <typename Control> Control& Find(const char* szName) const
    {
        auto* const control = dynamic_cast<Control*>(wxWindow::FindWindowByName(szName, m_frame));
        if (!control)
            throw std::runtime_error("no such control");
        return *control;
    }
    wxGrid& Grid() const { return Find<wxGrid>("grid"); }

    /// Sends a command as its menu item does; nothing if the item is off.
    void Command(int nId);
    bool IsOn(int nId) const; ///< menu item and tool, which must agree

    /// Presses a button beside the list, as its release does; nothing if it is off.
    void Press(int nId);

    /// Lets a question for photographs be answered with these paths.
    static void ChooseImages(const std::vector<std::string>& vsPaths);
    static wxArrayString Paths(const std::vector<std::string>& vsPaths);

    /// Writes JPEGs of one scene at different exposures, with Exif data. @return their paths
    std::vector<std::string> Series(int nImages, wxSize size = wxSize(64, 48)) const;

    TempFolder m_folder;
    LumiStrandHDRFrm* m_frame;
};

} // namespace LS::Tests
