// The main window: a page with the series, a page with the result, and the commands.
#pragma once

#include "Widgets/ModalDialogs.h"
#include "frame/ControlRules.h"
#include "frame/SourceRecords.h"

#include <cstdint>
#include <memory>

#include <wx/frame.h>

class OwnedCurves;
class wxAuiNotebook;
class wxBoxSizer;
class wxCheckBox;
class wxChoice;
class wxGrid;
class wxGridEvent;
class wxGridRangeSelectEvent;
class wxPanel;
class wxSizer;
class wxSlider;
class wxTextCtrl;

namespace LS::Widgets {
class lsRadioButton;
class lsStaticPicture;
class wxSashSplitterWindow;
} // namespace LS::Widgets

/// Fixed window ids; the others are the library's own.
enum FrameId {
    ID_TOOLBAR = 6000,
    ID_CREATE_HDR = 6001,
    ID_CALCULATE_CURVE = 6002,
    ID_EXISTING_CURVE = 6003,
    ID_BIT_DEPTH = 6004,
    ID_EXPOSURE = 6005,
    ID_GAMMA = 6006,
    ID_HELP_TOPICS = 6007
};

/// The window has a fixed size, and is hidden when it has been made. It owns the records of the series and
/// the preview of the result; the engine owns everything else of a merged image.
class LumiStrandHDRFrm : public wxFrame {
public:
    LumiStrandHDRFrm(wxWindow* parent, wxWindowID id, const wxString& title,
                     const wxPoint& pos = wxDefaultPosition, const wxSize& size = wxSize(800, 580),
                     long style = wxCAPTION | wxCLIP_CHILDREN | wxMINIMIZE_BOX | wxCLOSE_BOX | wxSYSTEM_MENU,
                     const wxString& name = "Main Frame");
    LumiStrandHDRFrm(const LumiStrandHDRFrm&) = delete;
    LumiStrandHDRFrm& operator=(const LumiStrandHDRFrm&) = delete;
    ~LumiStrandHDRFrm() override;

    /// Starts a new series with these paths, after the question whether to save a modified result.
    void AddFiles(const wxArrayString& paths);

    /// Files dropped on the window: a new series where there is none, else more images of this one. They come
    /// into the list from the event loop.
    /// @return false if the window is busy, and doesn't take them
    bool TakeDroppedFiles(const wxArrayString& paths);

    /// Whether nothing may come from outside: a job runs, or a dialog waits for an answer.
    bool IsBusy() const { return !IsEnabled() || m_modalDialogs.IsAnyUp(); }

    /// Whether a job is at work, and doesn't wait for an answer.
    bool IsWorking() const { return !IsEnabled() && !m_modalDialogs.IsAnyUp(); }

private:
    // Building the window.
    void CreateMenus();
    void CreateTools();
    void CreatePages();
    wxWindow* CreateListPanel();
    wxSizer* CreateListButtons(wxWindow* parent);
    wxWindow* CreateCurvePanel();
    wxPanel* CreateResultPage();
    wxSizer* CreateToneRow(wxWindow* parent);

    // States of commands and controls.
    void ShowState(FrameState state);
    void EnableCommand(int nId, bool bOn);
    void ResetToneControls();
    void ShowPage(Page page);
    void ApplyListButtons(const ListButtons& buttons);
    bool AskToSave();

    void OnClose(wxCloseEvent& event);
    void OnQuit(wxCommandEvent& event);
    void OnAbout(wxCommandEvent& event);
    void OnHelpTopics(wxCommandEvent& event);
    void OnCurveRadio(wxCommandEvent& event);
    void OnIdle(wxIdleEvent& event);

    // The source list.
    void ResetForNewSeries(const wxArrayString& paths);
    void ClearList();
    void AddImages(const wxArrayString& paths);
    void AddImage(const wxString& path, int nPlaceholderRow);
    void DeleteLastRows(int nRows);
    void SelectMovedRows(const std::vector<int>& rows, int nStep);
    static bool RememberFolderOf(const wxArrayString& paths);
    void ToggleRow(int nRow);
    bool IsTicked(int nRow) const;
    void TickRow(int nRow, bool bOn);

    void OnNew(wxCommandEvent& event);
    void OnAddImage(wxCommandEvent& event);
    void OnRemoveImage(wxCommandEvent& event);
    void OnMoveUp(wxCommandEvent& event);
    void OnMoveDown(wxCommandEvent& event);
    void OnRangeSelect(wxGridRangeSelectEvent& event);
    void OnCellChange(wxGridEvent& event);
    void OnCellLeftClick(wxGridEvent& event);

    // The source list by keys.
    void GoToRow(int nRow);
    void ExtendSelectionTo(int nRow);
    void ToggleSelectedRows();
    bool NavigateRows(const wxKeyEvent& event);
    bool RunListKey(const wxKeyEvent& event);
    void LeaveCellEditor(const wxKeyEvent& event);
    void OnGridKey(wxKeyEvent& event);

    // Create HDR Image.
    bool SettleCurve(OwnedCurves& curves, wxString& newCurvePath) const;
    bool LoadSavedCurve(OwnedCurves& curves) const;
    bool SettleNewCurve(wxString& path) const;
    bool CheckExposures() const;
    void ShowResult();
    void LoseResult();
    void KeepCurve(const wxString& path);
    void FillCurveList();

    void OnCreateHDR(wxCommandEvent& event);

    // The result and its files.
    float Exposure() const;
    float Gamma() const;
    void SaveHdr();
    void SaveLdrPicture();

    void OnBitDepth(wxCommandEvent& event);
    void OnToneSlider(wxScrollEvent& event);
    void OnSave(wxCommandEvent& event);

    ModalDialogs m_modalDialogs;
    wxMenuBar* m_menuBar = nullptr;
    wxToolBar* m_toolBar = nullptr;
    bool m_horzToolbar = true;
    bool m_horzText = false; ///< text beside the pictures of the tools
    std::int32_t m_toolRows = 1;
    wxBoxSizer* m_mainSizer = nullptr;
    LS::Widgets::wxSashSplitterWindow* m_splitter = nullptr; ///< the page of the source images
    wxPanel* m_resultPanel = nullptr;                        ///< the page of the result
    wxAuiNotebook* m_notebook = nullptr;
    wxChoice* m_curveChoice = nullptr; ///< the saved curves; on where one of them is to be used
    wxCheckBox* m_saveCurveCheck = nullptr;
    wxTextCtrl* m_curveNameText = nullptr;
    wxGrid* m_grid = nullptr;
    LS::Widgets::lsStaticPicture* m_thumbnail = nullptr; ///< of the row that was selected last
    LS::Widgets::lsRadioButton* m_addButton = nullptr;
    LS::Widgets::lsRadioButton* m_removeButton = nullptr;
    LS::Widgets::lsRadioButton* m_upButton = nullptr;
    LS::Widgets::lsRadioButton* m_downButton = nullptr;
    LS::Widgets::lsStaticPicture* m_preview = nullptr;
    wxChoice* m_bitDepthChoice = nullptr;
    wxSlider* m_exposureSlider = nullptr; ///< tenths of a stop
    wxSlider* m_gammaSlider = nullptr;    ///< tenths
    SourceRecords m_images;               ///< row r of the grid shows record r
    std::int32_t m_placeholderRows;       ///< rows at the end of the grid that wait for images
    std::int32_t m_nextRowId = 0;
    bool m_moveNamed = false;               ///< the kind of a slider's move came, its change is to follow
    bool m_modified = false;                ///< a result changed since it was saved
    std::unique_ptr<wxImage> m_resultImage; ///< the first preview of the latest merge

    wxDECLARE_EVENT_TABLE();
};
