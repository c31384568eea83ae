// The save dialog without its window: formats, names and paths.
#include "Widgets/SaveProposal.h"

#include <wx/filename.h>
#include <wx/translation.h>

namespace {

wxString ProposedSuffix(const wxString& format)
{
    for (const SaveFormat& known : SAVE_FORMATS)
        if (format == known.szText)
            return known.szProposedSuffix;
    return format == TARGA_FORMAT ? ".tga" : "";
}

} // namespace

const char* const EXCLUDED_CHARACTERS = "*?\\/:\"<>|";

wxString ProposedPath(const wxString& folder, unsigned nNumber, const wxString& format)
{
    return folder + wxString::Format("pano%u", nNumber) + ProposedSuffix(format);
}

wxString LinkText(SaveOption option, int nValue, LinkMoment moment)
{
    if (option == SaveOption::None)
        return {};
    const wxString value = wxGetTranslation("Quality:") + wxString::Format("%d", nValue);
    if (option == SaveOption::Quality)
        return value + "%";
    return value + (moment == LinkMoment::Opened ? "Bits" : " Bits");
}

std::optional<std::size_t> StemLength(const wxString& name)
{
    const std::size_t nDot = name.rfind('.');
    return nDot == wxString::npos ? std::nullopt : std::optional(nDot);
}

bool IsFileName(const wxString& name)
{
    if (name.find_first_of(EXCLUDED_CHARACTERS) != wxString::npos)
        return false;
    const wxString stem = wxFileName(name).GetName();
    return !stem.empty() && stem[0] != '.';
}

wxString WithExtension(const wxString& path, const wxString& extension)
{
    wxString folder, stem, old;
    bool bHasOld = false;
    wxFileName::SplitPath(path, nullptr, &folder, &stem, &old, &bHasOld);
    const std::size_t nOld = bHasOld ? old.length() + 1 : 0;
    return path.Left(path.length() - nOld) + "." + extension;
}

wxString WithSomeExtension(const wxString& path, const wxString& extension)
{
    return wxFileName(path).GetExt().empty() ? WithExtension(path, extension) : path;
}
