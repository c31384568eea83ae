// Builds the menus, tools and pages of the main window.
#include "Widgets/SashSplitter.h"
#include "Widgets/SaveProposal.h"
#include "Widgets/StaticPicture.h"
#include "Widgets/lsRadioButton.h"
#include "frame/LumiStrandHDRFrm.h"
#include "frame/SourceGrid.h"
#include "resources/Pictures.h"

#include <algorithm>

#include <wx/aui/auibook.h>
#include <wx/aui/dockart.h>
#include <wx/checkbox.h>
#include <wx/choice.h>
#include <wx/grid.h>
#include <wx/menu.h>
#include <wx/radiobut.h>
#include <wx/sizer.h>
#include <wx/slider.h>
#include <wx/statbox.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>
#include <wx/toolbar.h>
#include <wx/valtext.h>

using LS::Resources::Command;
using LS::Resources::CommandPicture;
using LS::Resources::Form;
using LS::Widgets::lsRadioButton;
using LS::Widgets::lsStaticPicture;

namespace {

constexpr int BORDER = 5;
constexpr int MINIMUM_PANE = 110;
constexpr int SLIDER_WIDTH = 200;
const wxSize THUMBNAIL(160, 160);

const wxSizerFlags IN_ROW = wxSizerFlags().CentreVertical().Border(wxALL, BORDER);

void AddTool(wxToolBar& toolBar, int nId, Command command, const wxString& shortHelp)
{
    toolBar.AddTool(nId, wxEmptyString, CommandPicture(command), CommandPicture(command, Form::Disabled),
                    wxITEM_NORMAL, shortHelp);
}

lsRadioButton* CreateListButton(wxWindow* parent, int nId, Command command, const wxString& toolTip)
{
    auto* const button = new lsRadioButton(parent, nId, CommandPicture(command), wxDefaultPosition,
                                           wxDefaultSize, lsRB_PUSH, toolTip);
    button->SetBitmapDisabled(CommandPicture(command, Form::Disabled));
    button->SetBitmapMargin(wxSize(3, 3), true);
    return button;
}

wxStaticText* CreateLabel(wxWindow* parent, const wxString& text)
{
    return new wxStaticText(parent, wxID_STATIC, text, wxDefaultPosition, wxDefaultSize, 0, "staticText");
}

wxSlider* CreateSlider(wxWindow* parent, int nId, int nValue, int nMin, int nMax)
{
    auto* const slider =
        new wxSlider(parent, nId, nValue, nMin, nMax, wxDefaultPosition, wxSize(SLIDER_WIDTH, -1),
                     wxSL_HORIZONTAL, wxDefaultValidator, "slider");
    slider->Disable();
    return slider;
}

void AddSpacer(wxSizer& row)
{
    row.Add(BORDER, BORDER, 0, wxALIGN_CENTER_VERTICAL | wxALL, BORDER);
}

} // namespace

void LumiStrandHDRFrm::CreateMenus()
{
    if (wxMenuBar* const previous = GetMenuBar()) {
        SetMenuBar(nullptr);
        delete previous;
    }
    auto* const file = new wxMenu;
    file->Append(wxID_NEW, wxGetTranslation("&New...\tCtrl+N"), wxGetTranslation("New"));
    file->Append(wxID_SAVE, wxGetTranslation("&Save\tCtrl+S"), wxGetTranslation("Save"));
    file->AppendSeparator();
    file->Append(wxID_EXIT, wxGetTranslation("E&xit\tCtrl+Q"), wxGetTranslation("Exit"));
    auto* const edit = new wxMenu;
    edit->Append(ID_CREATE_HDR, wxGetTranslation("&Create HDR Image"), wxGetTranslation("Create HDR Image"));
    auto* const help = new wxMenu;
    help->Append(ID_HELP_TOPICS, wxGetTranslation("&Help Topics...\tF1"));
    help->Append(wxID_ABOUT, wxGetTranslation("&About Tolvanic Lumistrand"));

    m_menuBar = new wxMenuBar;
    m_menuBar->Append(file, wxGetTranslation("&File"));
    m_menuBar->Append(edit, wxGetTranslation("&Edit"));
    m_menuBar->Append(help, wxGetTranslation("&Help"));
    SetMenuBar(m_menuBar);
}

void LumiStrandHDRFrm::CreateTools()
{
    // Without text: the tools have no labels, for which the toolkit would leave a line all the same.
    m_toolBar = CreateToolBar(wxTB_FLAT | wxTB_DOCKABLE | (m_horzToolbar ? wxTB_HORIZONTAL : wxTB_VERTICAL) |
                                  (m_horzText ? wxTB_HORZ_LAYOUT : 0),
                              ID_TOOLBAR, "toolbar");
    m_toolBar->SetToolBitmapSize(wxSize(26, 26));
    AddTool(*m_toolBar, wxID_NEW, Command::New, wxGetTranslation("New"));
    AddTool(*m_toolBar, ID_CREATE_HDR, Command::CreateHDR, wxGetTranslation("Create HDR Image"));
    AddTool(*m_toolBar, wxID_SAVE, Command::Save, wxGetTranslation("Save"));
    m_toolBar->Realize();
    m_toolBar->SetRows(m_toolRows);
}

void LumiStrandHDRFrm::CreatePages()
{
    m_notebook = new wxAuiNotebook(this, wxID_ANY, wxDefaultPosition, wxDefaultSize,
                                   wxAUI_NB_TOP | wxFULL_REPAINT_ON_RESIZE);
    // What it paints behind the pages, for those of their controls that paint it anew.
    m_notebook->SetOwnBackgroundColour(
        m_notebook->GetAuiManager().GetArtProvider()->GetColour(wxAUI_DOCKART_BACKGROUND_COLOUR));
    m_splitter = new LS::Widgets::wxSashSplitterWindow(m_notebook);
    m_splitter->SetSashGravity(1.0);
    wxWindow* const listPanel = CreateListPanel();
    wxWindow* const curvePanel = CreateCurvePanel();
    // A theme with taller controls than these shall not cut them off.
    m_splitter->SetMinimumPaneSize(std::max(MINIMUM_PANE, curvePanel->GetBestSize().y));
    m_splitter->SplitHorizontally(listPanel, curvePanel, -1);
    m_notebook->AddPage(m_splitter, wxGetTranslation("Source Images"), true);

    m_resultPanel = CreateResultPage();
    m_notebook->AddPage(m_resultPanel, wxGetTranslation("Result Image"), false);

    m_mainSizer = new wxBoxSizer(wxVERTICAL);
    m_mainSizer->Add(m_notebook, wxSizerFlags(1).Expand());
}

wxWindow* LumiStrandHDRFrm::CreateListPanel()
{
    auto* const panel = new wxPanel(m_splitter, wxID_ANY, wxDefaultPosition, wxDefaultSize,
                                    wxTAB_TRAVERSAL | wxBORDER_SUNKEN, "panel");
    m_thumbnail =
        new lsStaticPicture(panel, wxID_STATIC, wxNullBitmap, wxDefaultPosition, THUMBNAIL, wxBORDER_SUNKEN);
    auto* const left = new wxBoxSizer(wxHORIZONTAL);
    left->Add(m_thumbnail);
    left->Add(CreateListButtons(panel));
    m_grid = CreateSourceGrid(panel);
    m_grid->Bind(wxEVT_KEY_DOWN, &LumiStrandHDRFrm::OnGridKey, this);

    auto* const sizer = new wxBoxSizer(wxHORIZONTAL);
    sizer->Add(left, wxSizerFlags().Expand().Border(wxLEFT | wxTOP | wxBOTTOM, BORDER));
    sizer->Add(m_grid, wxSizerFlags(1).Expand().Border(wxRIGHT | wxTOP | wxBOTTOM, BORDER));
    panel->SetSizer(sizer);
    return panel;
}

wxSizer* LumiStrandHDRFrm::CreateListButtons(wxWindow* parent)
{
    m_addButton =
        CreateListButton(parent, wxID_ADD, Command::Add, wxGetTranslation("Add one or more images"));
    m_removeButton = CreateListButton(parent, wxID_REPLACE, Command::Remove,
                                      wxGetTranslation("Remove the selected image"));
    m_upButton = CreateListButton(parent, wxID_UP, Command::MoveUp, wxGetTranslation("Move up"));
    m_downButton = CreateListButton(parent, wxID_DOWN, Command::MoveDown, wxGetTranslation("Move down"));
    auto* const column = new wxBoxSizer(wxVERTICAL);
    for (lsRadioButton* const button : {m_addButton, m_removeButton, m_upButton, m_downButton})
        column->Add(button, wxSizerFlags().CentreHorizontal());
    return column;
}

wxWindow* LumiStrandHDRFrm::CreateCurvePanel()
{
    auto* const panel = new wxPanel(m_splitter, wxID_ANY, wxDefaultPosition, wxDefaultSize,
                                    wxTAB_TRAVERSAL | wxBORDER_SUNKEN, "panel");
    auto* const group = new wxStaticBox(panel, wxID_ANY, wxGetTranslation("Camera Response Curve"),
                                        wxDefaultPosition, wxDefaultSize, 0, "groupBox");
    auto* const existing =
        new wxRadioButton(panel, ID_EXISTING_CURVE, wxGetTranslation("Use existing camera response curve"),
                          wxDefaultPosition, wxDefaultSize, 0, wxDefaultValidator, "radioButton");
    existing->SetValue(true);
    m_curveChoice = new wxChoice(panel, wxID_ANY, wxDefaultPosition, wxDefaultSize, 0, nullptr, 0,
                                 wxDefaultValidator, "choice");
    FillCurveList();
    m_curveChoice->SetStringSelection(wxGetTranslation("Standard"));
    auto* const calculate =
        new wxRadioButton(panel, ID_CALCULATE_CURVE, wxGetTranslation("Calculate camera response curve"),
                          wxDefaultPosition, wxDefaultSize, 0, wxDefaultValidator, "radioButton");
    m_saveCurveCheck = new wxCheckBox(panel, wxID_ANY, wxGetTranslation("Save Curve"), wxDefaultPosition,
                                      wxDefaultSize, 0, wxDefaultValidator, "check");
    m_saveCurveCheck->SetValue(true);
    m_saveCurveCheck->Disable();
    wxStaticText* const nameLabel = CreateLabel(panel, wxGetTranslation("Curve Name:"));
    nameLabel->Disable();
    wxTextValidator validator(wxFILTER_EXCLUDE_CHAR_LIST);
    validator.SetCharExcludes(EXCLUDED_CHARACTERS);
    m_curveNameText =
        new wxTextCtrl(panel, wxID_ANY, "crvName", wxDefaultPosition, wxDefaultSize, 0, validator, "text");
    m_curveNameText->Disable();

    auto* const row1 = new wxBoxSizer(wxHORIZONTAL);
    row1->Add(existing, IN_ROW);
    row1->Add(m_curveChoice, IN_ROW);
    auto* const row2 = new wxBoxSizer(wxHORIZONTAL);
    row2->Add(m_saveCurveCheck, IN_ROW);
    AddSpacer(*row2);
    row2->Add(nameLabel, IN_ROW);
    row2->Add(m_curveNameText, IN_ROW);
    auto* const sizer = new wxStaticBoxSizer(group, wxVERTICAL);
    sizer->Add(row1, wxSizerFlags().Expand());
    sizer->Add(calculate, wxSizerFlags().Expand().Border(wxALL, BORDER));
    sizer->Add(row2, wxSizerFlags().Expand().Border(wxLEFT, 15));
    panel->SetSizer(sizer);
    return panel;
}

wxPanel* LumiStrandHDRFrm::CreateResultPage()
{
    auto* const panel = new wxPanel(m_notebook, wxID_ANY, wxDefaultPosition, wxDefaultSize,
                                    wxTAB_TRAVERSAL | wxBORDER_NONE, "panel");
    auto* const sizer = new wxBoxSizer(wxVERTICAL);
    sizer->Add(CreateToneRow(panel), wxSizerFlags().Expand());
    m_preview = new lsStaticPicture(panel, wxID_STATIC, wxNullBitmap, wxDefaultPosition, wxDefaultSize,
                                    wxBORDER_SUNKEN);
    sizer->Add(m_preview, wxSizerFlags(1).Expand().Border(wxLEFT | wxRIGHT | wxBOTTOM, BORDER));
    panel->SetSizer(sizer);
    return panel;
}

wxSizer* LumiStrandHDRFrm::CreateToneRow(wxWindow* parent)
{
    m_bitDepthChoice = new wxChoice(parent, ID_BIT_DEPTH, wxDefaultPosition, wxDefaultSize, 0, nullptr, 0,
                                    wxDefaultValidator, "choice");
    m_bitDepthChoice->Append(wxGetTranslation("32bit (HDRI)"));
    m_bitDepthChoice->Append(wxGetTranslation("8bit (LDRI)"));
    m_bitDepthChoice->SetStringSelection(wxGetTranslation("32bit (HDRI)"));
    m_exposureSlider = CreateSlider(parent, ID_EXPOSURE, EXPOSURE_AT_REST, -50, 50);
    m_gammaSlider = CreateSlider(parent, ID_GAMMA, GAMMA_AT_REST, 10, 30);

    auto* const row = new wxBoxSizer(wxHORIZONTAL);
    row->Add(CreateLabel(parent, wxGetTranslation("Bit Depth:")), IN_ROW);
    row->Add(m_bitDepthChoice, IN_ROW);
    AddSpacer(*row);
    row->Add(CreateLabel(parent, wxGetTranslation("Exposure:")), IN_ROW);
    row->Add(m_exposureSlider, IN_ROW);
    AddSpacer(*row);
    row->Add(CreateLabel(parent, wxGetTranslation("Gamma:")), IN_ROW);
    row->Add(m_gammaSlider, IN_ROW);
    return row;
}
