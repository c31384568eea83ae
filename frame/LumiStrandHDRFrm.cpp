// The main window itself: its making, its states, and the commands that belong to no page.
#include "frame/LumiStrandHDRFrm.h"

#include "Util/Paths.h"
#include "Widgets/SashSplitter.h"
#include "Widgets/lsRadioButton.h"
#include "app/AboutSplashWnd.h"
#include "frame/FileDrop.h"
#include "frame/Messages.h"
#include "frame/SourceGrid.h"
#include "resources/Pictures.h"

#include <wx/aui/auibook.h>
#include <wx/checkbox.h>
#include <wx/choice.h>
#include <wx/filefn.h>
#include <wx/grid.h>
#include <wx/image.h>
#include <wx/intl.h>
#include <wx/menu.h>
#include <wx/panel.h>
#include <wx/sizer.h>
#include <wx/slider.h>
#include <wx/textctrl.h>
#include <wx/toolbar.h>
#include <wx/utils.h>

wxBEGIN_EVENT_TABLE(LumiStrandHDRFrm, wxFrame) EVT_CLOSE(LumiStrandHDRFrm::OnClose)
    EVT_MENU(wxID_EXIT, LumiStrandHDRFrm::OnQuit) EVT_MENU(wxID_ABOUT, LumiStrandHDRFrm::OnAbout)
        EVT_MENU(ID_HELP_TOPICS, LumiStrandHDRFrm::OnHelpTopics)
    // A menu item and the tool of its id send the same event.
    EVT_MENU(wxID_NEW, LumiStrandHDRFrm::OnNew) EVT_MENU(ID_CREATE_HDR, LumiStrandHDRFrm::OnCreateHDR)
        EVT_MENU(wxID_SAVE, LumiStrandHDRFrm::OnSave) EVT_COMMAND(wxID_ADD, lsEVT_RADIOBUTTON_CLICKED,
                                                                  LumiStrandHDRFrm::OnAddImage)
            EVT_COMMAND(wxID_REPLACE, lsEVT_RADIOBUTTON_CLICKED, LumiStrandHDRFrm::OnRemoveImage)
                EVT_COMMAND(wxID_UP, lsEVT_RADIOBUTTON_CLICKED, LumiStrandHDRFrm::OnMoveUp)
                    EVT_COMMAND(wxID_DOWN, lsEVT_RADIOBUTTON_CLICKED,
                                LumiStrandHDRFrm::OnMoveDown) EVT_RADIOBUTTON(ID_CALCULATE_CURVE,
                                                                              LumiStrandHDRFrm::OnCurveRadio)
                        EVT_RADIOBUTTON(ID_EXISTING_CURVE, LumiStrandHDRFrm::OnCurveRadio)
                            EVT_CHOICE(ID_BIT_DEPTH, LumiStrandHDRFrm::OnBitDepth)
                                EVT_COMMAND_SCROLL(ID_EXPOSURE, LumiStrandHDRFrm::OnToneSlider)
                                    EVT_COMMAND_SCROLL(ID_GAMMA, LumiStrandHDRFrm::OnToneSlider)
                                        EVT_GRID_RANGE_SELECTED(LumiStrandHDRFrm::OnRangeSelect)
                                            EVT_GRID_CELL_CHANGED(LumiStrandHDRFrm::OnCellChange)
                                                EVT_GRID_CELL_LEFT_CLICK(LumiStrandHDRFrm::OnCellLeftClick)
                                                    EVT_IDLE(LumiStrandHDRFrm::OnIdle) wxEND_EVENT_TABLE()

namespace {

/// Enables a window only if that changes something, since idle time asks often.
void EnableIfDifferent(wxWindow& window, std::optional<bool> bOn)
{
    if (bOn && window.IsThisEnabled() != *bOn)
        window.Enable(*bOn);
}

} // namespace

LumiStrandHDRFrm::LumiStrandHDRFrm(wxWindow* parent, wxWindowID id, const wxString& title, const wxPoint& pos,
                                   const wxSize& size, long style, const wxString& name)
    : wxFrame(parent, id, title, pos, wxDefaultSize, style, name), m_placeholderRows(WINDOW_ROWS)
{
    CreateMenus();
    CreateTools();
    SetIcons(LS::Resources::ApplicationIcon());
    // Given as the size of the client area: with any other the toolkit waits for the window manager's
    // borders, and meanwhile lays out the bars two pixels wide, which GTK reports as errors.
    SetClientSize(size - GetSize() + GetClientSize());
    SetMinSize(GetClientSize());
    CreatePages();
    SetAutoLayout(true);
    SetSizer(m_mainSizer);
    Layout();
    ShowState(FrameState::Empty);
    SetDropTarget(new FileDrop([this](const wxArrayString& paths) { return TakeDroppedFiles(paths); }));
}

LumiStrandHDRFrm::~LumiStrandHDRFrm() = default;

void LumiStrandHDRFrm::ShowState(FrameState state)
{
    const StateRules rules = RulesOf(state);
    m_splitter->Enable(rules.bSourcePage);
    m_resultPanel->Enable(rules.bResultPage);
    EnableCommand(ID_CREATE_HDR, rules.bCreateHDR);
    EnableCommand(wxID_SAVE, rules.bSave);
    ResetToneControls();
    ShowPage(rules.onTop);
}

void LumiStrandHDRFrm::EnableCommand(int nId, bool bOn)
{
    m_menuBar->Enable(nId, bOn);
    m_toolBar->EnableTool(nId, bOn);
}

void LumiStrandHDRFrm::ResetToneControls()
{
    m_bitDepthChoice->SetStringSelection(wxGetTranslation("32bit (HDRI)"));
    m_exposureSlider->Disable();
    m_exposureSlider->SetValue(EXPOSURE_AT_REST);
    m_gammaSlider->Disable();
    m_gammaSlider->SetValue(GAMMA_AT_REST);
}

void LumiStrandHDRFrm::ShowPage(Page page)
{
    m_notebook->SetSelection(static_cast<std::size_t>(page));
}

void LumiStrandHDRFrm::ApplyListButtons(const ListButtons& buttons)
{
    EnableIfDifferent(*m_removeButton, buttons.bRemove);
    EnableIfDifferent(*m_upButton, buttons.bUp);
    EnableIfDifferent(*m_downButton, buttons.bDown);
}

/// Asks whether to save a modified result first, and does it. @return false if the command shall end
bool LumiStrandHDRFrm::AskToSave()
{
    if (!m_modified)
        return true;
    const int nAnswer = ShowMessage(wxGetTranslation("#0002008 Do you want to save the image?"),
                                    wxYES_NO | wxCANCEL | wxICON_INFORMATION);
    if (nAnswer == wxYES) {
        wxCommandEvent save;
        OnSave(save);
    }
    return nAnswer != wxCANCEL;
}

void LumiStrandHDRFrm::OnClose(wxCloseEvent& event)
{
    if (AskToSave())
        event.Skip();
}

void LumiStrandHDRFrm::OnQuit(wxCommandEvent&)
{
    Close(false);
}

void LumiStrandHDRFrm::OnHelpTopics(wxCommandEvent&)
{
    using LS::Util::JoinPath;
    const wxString page = JoinPath(JoinPath(LS::Util::ProgramFolder(), L"help"), L"Lumistrand6_help.htm");
    if (wxFileExists(page))
        wxLaunchDefaultBrowser(page);
}

void LumiStrandHDRFrm::OnAbout(wxCommandEvent&)
{
    AboutSplashWnd about(this, wxID_ANY, wxGetTranslation("Tolvanic Lumistrand"));
    about.Centre(wxBOTH);
    about.SetAboutMode();
    about.ShowModal();
}

void LumiStrandHDRFrm::OnCurveRadio(wxCommandEvent& event)
{
    const CurveControls controls = CurveControlsFor(event.GetId() == ID_EXISTING_CURVE);
    m_curveChoice->Enable(controls.bCurveList);
    m_saveCurveCheck->Enable(controls.bSaveCheck);
    m_curveNameText->Enable(controls.bCurveName);
}

void LumiStrandHDRFrm::OnIdle(wxIdleEvent& event)
{
    ApplyListButtons(ListButtonsAtIdle(m_images.size(), m_grid->GetNumberRows(), SelectionOf(*m_grid)));
    event.Skip();
}
