// The main window under test: its controls, its dialogs, and series to load.
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
    int nAnswer = wxID_OK; ///< or wxID_YES, wxID_NO, wxID_CANCEL
};

/// The question before a result is lost.
Box SaveQuestion(int nAnswer);

/// The question before an existing file is replaced.
Box ReplaceQuestion(const std::string& sPath, int nAnswer);

/// Answers the message boxes that are announced, in their order; any other one fails the test, and so does a
/// question for a file without an answer.
class ExpectedBoxes {
public:
    /// @param dialogs  answers what is no message box
    explicit ExpectedBoxes(const std::vector<Box>& boxes = {}, ModalAnswer::Answer dialogs = {});
    ~ExpectedBoxes(); ///< fails the test if one didn't come

private:
    int Answer(wxDialog& dialog);

    std::deque<Box> m_boxes;
    ModalAnswer::Answer m_dialogs;
    ModalAnswer m_answer;
};

/// Answers a question for a file. An empty path cancels it.
/// @param nFormat  the position in the list of formats
ModalAnswer::Answer ChooseFile(const std::string& sPath, int nFormat = 0);

/// Presses Cancel in the progress dialog of the next job, once that shows a position. The window must be
/// busy then, and refuse files.
class CancelledJob {
public:
    explicit CancelledJob(int nPercent);
    CancelledJob(const CancelledJob&) = delete;
    CancelledJob& operator=(const CancelledJob&) = delete;
    ~CancelledJob(); ///< fails the test if the job was over before

private:
    void Look(wxIdleEvent& event);

    int m_nPercent;
    bool m_bPressed = false;
};

/// A shown main window without a series.
class FrameTest : public testing::Test {
protected:
    FrameTest();
    ~FrameTest() override;

    /// A control by its id or its name.
    template <typename Control, typename Key> Control& Find(Key key) const
    {
        if (auto* const control = dynamic_cast<Control*>(m_frame->FindWindow(key)))
            return *control;
        throw std::runtime_error("no such control");
    }
    wxGrid& Grid() const { return Find<wxGrid>("grid"); }
    wxWindow& Preview() const;

    /// Whether the preview is that of a series of this size, mapped with these values.
    bool PreviewShows(wxSize size, float fExposure, float fGamma) const;

    /// Gives a command as its menu item does; nothing if the item is off.
    void Command(int nId);
    bool IsOn(int nId) const; ///< menu item and tool, which must agree

    // What a user does to the controls.
    void Press(int nId); ///< a button beside the list
    void ChooseCurveMode(int nId);
    void ChooseBitDepth(int nPosition);
    void Slide(int nId, int nPosition);
    void TypeIntoCell(int nRow, int nColumn, const std::string& sText) const;
    void ClickTick(int nRow) const;
    void Select(const std::vector<int>& rows) const;

    /// Whether the window believes that a result is to be saved. If not, its list is empty then.
    bool AsksToSave() const;

    /// Starts a series as a start with these files does.
    void Load(const std::vector<std::string>& vsPaths) const;

    static wxArrayString Paths(const std::vector<std::string>& vsPaths);

    /// Writes three photographs of one scene. @return their paths
    std::vector<std::string> Series(wxSize size = wxSize(64, 48)) const;

    /// What the program without windows writes of photographs. @param sExtension  of its file
    Bytes ByHeadless(std::vector<std::string> vsPaths, const std::vector<std::string>& vsOptions = {},
                     const std::string& sExtension = "exr") const;

    TempFolder m_folder;
    LumiStrandHDRFrm* m_frame;

private:
    void ShowSources() const;

    /// Sends what the toolkit sends for a control.
    void Send(int nId, wxEventType type, int nValue = 0);

    ExpectedBoxes m_none; // is asked last; a box that waits for an answer would stop the tests
};

} // namespace LS::Tests
