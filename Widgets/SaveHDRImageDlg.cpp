// Builds the save dialog, and checks its answers before it lets go.
#include "Widgets/SaveHDRImageDlg.h"

#include "Util/FailureLog.h"
#include "Util/Paths.h"
#include "Widgets/HyperlinkCtrl.h"
#include "Widgets/JPEGCompressionSettings.h"
#include "Widgets/ReplaceQuestion.h"
#include "Widgets/TiffOptionsDlg.h"
#include "xml/Config.h"

#include <wx/button.h>
#include <wx/choice.h>
#include <wx/filepicker.h>
#include <wx/image.h>
#include <wx/intl.h>
#include <wx/log.h>
#include <wx/msgdlg.h>
#include <wx/sizer.h>
#include <wx/slider.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>
#include <wx/valtext.h>

#include <filesystem>
#include <string>
#include <system_error>

using LS::Util::FolderFromPath;
using LS::Util::JoinPath;
using LS::Util::NarrowPath;
using LS::Widgets::lsHyperlinkCtrl;
using LS::Widgets::lsHyperlinkEvent;

namespace {

constexpr int ID_FORMAT = 6699;
constexpr int ID_HYPERLINK = 6700;
constexpr int ID_FILE_NAME = 6701;

constexpr int BORDER = 5;
constexpr int PATH_WIDTH = 360; // an ordinary folder of pictures fits

wxSizerFlags LabelFlags()
{
    return wxSizerFlags().CentreVertical().Border(wxALL, BORDER);
}

wxSizerFlags FieldFlags()
{
    return wxSizerFlags().Expand().CentreVertical().Border(wxALL, BORDER);
}

/// Adds the label of the field that comes next.
void AddLabel(wxWindow* dialog, wxSizer* grid, const wxString& text)
{
    grid->Add(new wxStaticText(dialog, wxID_STATIC, text), LabelFlags());
}

/// Makes the folder if it is missing; the one above it must exist.
bool EnsureFolder(const std::wstring& sFolder)
{
    const std::string sNarrow = NarrowPath(sFolder);
    std::error_code error;
    if (std::filesystem::is_directory(sNarrow, error) || std::filesystem::create_directory(sNarrow, error))
        return true;
    wxLogError("make dir error!");
    LS::Util::LogFailure("making the folder of a picture", sNarrow, error.message());
    return false;
}

} // namespace

// clang-format off
wxBEGIN_EVENT_TABLE(SaveHDRImageDlg, wxDialog)
    EVT_CHOICE(ID_FORMAT, SaveHDRImageDlg::OnFormat)
    EVT_LSHYPERLINK(ID_HYPERLINK, SaveHDRImageDlg::OnHyperlink)
    EVT_BUTTON(wxID_SAVE, SaveHDRImageDlg::OnSave)
wxEND_EVENT_TABLE()
// clang-format on

SaveHDRImageDlg::SaveHDRImageDlg(wxWindow* parent, wxImage* image, wxWindowID id, const wxString& title,
                                 const wxPoint& pos, const wxSize& size, long style)
    : m_image(image)
{
    const Config& settings = *Config::Instance();
    m_format = settings.m_imageType;
    m_path = ProposedPath(settings.m_fullName, SaveCounter::Count(), m_format);
    m_quality = settings.m_jpegCompression;
    m_bits = settings.m_bitDepth;
    m_compression = settings.m_compressionType;

    SetExtraStyle(wxWS_EX_BLOCK_EVENTS);
    Create(parent, id, title, pos, size, style, wxDialogNameStr);
    CreateControls();
    GetSizer()->SetSizeHints(this);
    Centre(wxBOTH);
}

void SaveHDRImageDlg::CreateControls()
{
    auto* top = new wxBoxSizer(wxVERTICAL);
    SetSizer(top);
    auto* grid = new wxFlexGridSizer(2, 0, 0);
    top->Add(grid, wxSizerFlags().CentreHorizontal().Border(wxALL, BORDER));
    CreateFormatRows(grid);
    CreatePathRows(grid);
    top->Add(CreateButtons(), wxSizerFlags().Right().Border(wxALL, BORDER));
    ShowLink(CurrentLinkText(LinkMoment::Opened));
}

void SaveHDRImageDlg::CreateFormatRows(wxSizer* grid)
{
    AddLabel(this, grid, _("File Format:"));
    m_formatChoice = new wxChoice(this, ID_FORMAT);
    for (const SaveFormat& format : SAVE_FORMATS)
        m_formatChoice->Append(format.szText);
    m_formatChoice->SetStringSelection(m_format); // none if the settings hold another text
    grid->Add(m_formatChoice, FieldFlags());

    grid->Add(BORDER, BORDER, wxSizerFlags().Centre().Border(wxALL, BORDER));
    m_hyperlink = new lsHyperlinkCtrl(this, ID_HYPERLINK, _("Quality:"));
    // The rows below stay where they are when a format without options hides the link.
    grid->Add(m_hyperlink, LabelFlags().ReserveSpaceEvenIfHidden());
}

void SaveHDRImageDlg::CreatePathRows(wxSizer* grid)
{
    AddLabel(this, grid, _("File Name:"));
    wxTextValidator validator(wxFILTER_EXCLUDE_CHAR_LIST);
    validator.SetCharExcludes(EXCLUDED_CHARACTERS);
    m_fileNameText = new wxTextCtrl(this, ID_FILE_NAME, FileName(), wxDefaultPosition, wxDefaultSize,
                                    wxTE_NOHIDESEL, validator);
    // Mouse events don't climb to the dialog, so no event table of its sees them.
    m_fileNameText->Bind(wxEVT_ENTER_WINDOW, &SaveHDRImageDlg::OnEnterFileName, this);
    grid->Add(m_fileNameText, FieldFlags());

    AddLabel(this, grid, _("Destination Path:"));
    m_dirPicker = new wxDirPickerCtrl(this, wxID_ANY, Config::Instance()->m_fullName,
                                      _("Select Destination Directory"), wxDefaultPosition, wxDefaultSize,
                                      wxDIRP_USE_TEXTCTRL, wxDefaultValidator, "dirpicker");
    m_dirPicker->SetPath(Config::Instance()->m_fullName); // the constructor drops a folder that is missing
    m_dirPicker->GetTextCtrl()->SetMinSize(FromDIP(wxSize(PATH_WIDTH, wxDefaultCoord)));
    grid->Add(m_dirPicker, FieldFlags());
}

wxSizer* SaveHDRImageDlg::CreateButtons()
{
    auto* buttons = new wxBoxSizer(wxHORIZONTAL);
    auto* save = new wxButton(this, wxID_SAVE, _("&Save"));
    save->SetDefault();
    buttons->Add(save, wxSizerFlags().Border(wxALL, BORDER));
    buttons->Add(new wxButton(this, wxID_CANCEL, _("&Cancel")), wxSizerFlags().Border(wxALL, BORDER));
    return buttons;
}

/// Null where the list shows no entry.
const SaveFormat* SaveHDRImageDlg::Selected() const
{
    const int nAt = m_formatChoice->GetSelection();
    return nAt == wxNOT_FOUND ? nullptr : &SAVE_FORMATS.at(static_cast<std::size_t>(nAt));
}

wxString SaveHDRImageDlg::FileName() const
{
    return LS::Util::FileNameFromPath(m_path.ToStdWstring());
}

wxString SaveHDRImageDlg::CurrentLinkText(LinkMoment moment) const
{
    const SaveOption option = Selected() ? Selected()->option : SaveOption::None;
    return LinkText(option, option == SaveOption::Quality ? m_quality : m_bits, moment);
}

void SaveHDRImageDlg::ShowLink(const wxString& text)
{
    m_hyperlink->Show(!text.empty());
    if (!text.empty())
        m_hyperlink->SetLabel(text);
    Layout();
}

void SaveHDRImageDlg::SelectStem()
{
    if (const auto nLength = StemLength(m_fileNameText->GetValue()))
        m_fileNameText->SetSelection(0, static_cast<long>(*nLength));
}

void SaveHDRImageDlg::OnFormat(wxCommandEvent&)
{
    const SaveFormat* const pFormat = Selected();
    if (!pFormat)
        return;
    m_format = pFormat->szText;
    m_path = WithExtension(m_path, pFormat->szForcedExtension);
    m_fileNameText->ChangeValue(FileName());
    SelectStem();
    ShowLink(CurrentLinkText(LinkMoment::Opened));
}

void SaveHDRImageDlg::OnEnterFileName(wxMouseEvent& event)
{
    SelectStem();
    m_fileNameText->Refresh();
    m_fileNameText->Update();
    event.Skip();
}

void SaveHDRImageDlg::OnHyperlink(lsHyperlinkEvent&)
{
    const SaveOption option = Selected() ? Selected()->option : SaveOption::None;
    if (option == SaveOption::Quality && m_image)
        AskQuality();
    else if (option == SaveOption::BitDepth)
        AskTiffOptions();
}

void SaveHDRImageDlg::AskQuality()
{
    JPEGCompressionSettings dialog(this, wxID_ANY, _("JPEG Compression Settings"));
    dialog.SetImage(*m_image, m_quality);
    if (dialog.ShowModal() != wxID_OK)
        return;
    m_quality = dialog.m_slider->GetValue();
    ShowLink(CurrentLinkText(LinkMoment::Confirmed));
}

void SaveHDRImageDlg::AskTiffOptions()
{
    TiffOptionsDlg dialog(this, wxID_ANY, "Tiff Options");
    const auto nCompressions = static_cast<int>(dialog.m_compressionChoice->GetCount());
    const bool bListed = m_compression >= 0 && m_compression < nCompressions; // the settings may hold any
    dialog.m_bitDepthChoice->SetSelection(m_bits == 8 ? 0 : wxNOT_FOUND);
    dialog.m_compressionChoice->SetSelection(bListed ? m_compression : wxNOT_FOUND);
    if (dialog.ShowModal() != wxID_OK)
        return;
    m_bits = dialog.m_bitDepthChoice->GetSelection() == 0 ? 8 : 16;
    if (dialog.m_compressionChoice->GetSelection() != wxNOT_FOUND)
        m_compression = dialog.m_compressionChoice->GetSelection();
    ShowLink(CurrentLinkText(LinkMoment::Confirmed));
}

void SaveHDRImageDlg::OnSave(wxCommandEvent&)
{
    if (!TakePath())
        return;
    const std::wstring sFolder = FolderFromPath(m_path.ToStdWstring());
    if (!EnsureFolder(sFolder))
        return;
    Config::Instance()->m_fullName = JoinPath(sFolder, L"");
    SaveCounter::Add();
    EndModal(wxID_OK);
}

/// Takes the path from the controls. @return whether it can be a file's and may be written to
bool SaveHDRImageDlg::TakePath()
{
    wxString name = m_fileNameText->GetValue();
    // The field refuses these characters while they are typed, but not those that are pasted.
    if (!IsFileName(name)) {
        wxMessageBox(_("#0002001 Invalid file name or path."), _("Tolvanic Lumistrand"),
                     wxYES_NO | wxICON_QUESTION, this);
        return false;
    }
    if (const SaveFormat* const pFormat = Selected())
        name = WithExtension(name, pFormat->szForcedExtension);
    m_path = JoinPath(m_dirPicker->GetPath().ToStdWstring(), name.ToStdWstring());
    return MayBeWritten(this, m_path, "#0002002 File %s already exists, would you like to replace it? ",
                        wxICON_QUESTION);
}
