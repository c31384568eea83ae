// The main window under test: its controls by id, its dialogs, and series to load.
#pragma once

#include "frame/LumiStrandHDRFrm.h"
#include "tests/support/Gui.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <deque>
#include <map>
#include <string>
#include <vector>

#include <wx/grid.h>

namespace LS::Widgets {
class lsStaticPicture;
}

namespace LS::Tests {

/// A message box that is expected, and its answer.
struct Box {
    wxString text;
    long style;
    int nAnswer; ///< wxID_OK, wxID_YES, wxID_NO, wxID_CANCEL
};

/// A message that is only read and closed.
Box ErrorBox(const wxString& text);

/// The question before a result is lost.
Box SaveQuestion(int nAnswer);

/// Answers the message boxes that are announced, in their order; any other modal window fails the test.
class ExpectedBoxes {
public:
    /// @param dialogs  answers what is no message box
    explicit ExpectedBoxes(std::vector<Box> boxes, ModalAnswer::Answer dialogs = {});
    ~ExpectedBoxes(); ///< fails the test if one didn't come

private:
    int Answer(wxDialog& dialog);

    std::deque<Box> m_boxes;
    ModalAnswer::Answer m_dialogs;
    ModalAnswer m_answer;
};

/// Answers a question for a file. An empty path cancels it.
/// @param nFormat  the position in the list of formats
ModalAnswer::Answer ChooseFile(const std::string& sPath, int nFormat);

/// How a user stops a job.
enum class Stop { Button, ButtonTwice, CloseBox };

/// Stops the next job in its progress dialog, once that shows a position. The main window must be out of
/// reach then, which is also how it refuses the files of a second start.
class CancelledJob {
public:
    /// @param nPercent  of the job, at the least
    explicit CancelledJob(int nPercent, Stop stop = Stop::Button);
    CancelledJob(const CancelledJob&) = delete;
    CancelledJob& operator=(const CancelledJob&) = delete;
    ~CancelledJob(); ///< fails the test if the job was over before

private:
    void Look(wxIdleEvent& event);

    int m_nPercent;
    Stop m_stop;
    bool m_bPressed = false;
};

/// Gives a photograph Exif data: texts by key, such as "1/60" for "Exif.Photo.ExposureTime". No texts take
/// it all away.
void SetExif(const std::string& sPath, const std::map<std::string, std::string>& tags);

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
    LS::Widgets::lsStaticPicture& Thumbnail() const;
    LS::Widgets::lsStaticPicture& Preview() const;

    /// What a picture control shows, where the picture has this size.
    static wxImage Shown(LS::Widgets::lsStaticPicture& control, wxSize size);

    /// Whether the preview is that of a series of this size, mapped with these values.
    bool PreviewShows(wxSize size, float fExposure, float fGamma) const;

    /// Sends a command as its menu item does; nothing if the item is off.
    void Command(int nId);
    bool IsOn(int nId) const; ///< menu item and tool, which must agree

    /// Presses a button beside the list, as its release does; nothing if it is off.
    void Press(int nId);

    /// Chooses between the use of a curve and its calculation, as a click on the radio button does.
    void ChooseCurveMode(int nId);

    /// Moves to another entry of Bit Depth as a user does.
    void ChooseBitDepth(int nPosition);

    /// Moves a slider and sends what the toolkit sends for it.
    void Slide(int nId, int nPosition, wxEventType type = wxEVT_SCROLL_THUMBRELEASE) const;

    /// Opens the editor of a cell, enters a text and closes it. A text that a list lacks is not entered where
    /// the editor refuses others.
    void EditCell(int nRow, int nColumn, const wxString& text) const;

    /// Clicks on a cell, as far as the grid is concerned.
    void ClickCell(int nRow, int nColumn) const;

    /// Whether the window believes that a result is to be saved. If not, its series starts anew.
    bool AsksToSave() const;

    /// Starts a series as a start with these files does.
    void Load(const std::vector<std::string>& vsPaths) const;

    /// The texts of a column, from the top.
    std::vector<std::string> Column(int nColumn) const;

    /// Adds a photograph by the button beside the list and the dialog that it opens.
    void AddByDialog(const std::string& sPath);
    static wxArrayString Paths(const std::vector<std::string>& vsPaths);

    /// Writes JPEGs of one scene at different exposures, with Exif data. @return their paths
    std::vector<std::string> Series(int nImages, wxSize size = wxSize(64, 48)) const;

    TempFolder m_folder;
    LumiStrandHDRFrm* m_frame;

private:
    ModalAnswer m_unexpected; // is asked last; a box that waits for an answer would stop the tests
};

} // namespace LS::Tests
