// The folder of camera response curves.
#include "frame/SavedCurves.h"

#include "Util/Paths.h"
#include "Widgets/SaveProposal.h"

#include <wx/dir.h>

namespace {

std::wstring CurveFolder()
{
    return LS::Util::JoinPath(LS::Util::ProgramFolder(), L"curve");
}

} // namespace

wxString CurvePath(const wxString& name)
{
    return LS::Util::JoinPath(CurveFolder(), name.ToStdWstring());
}

wxArrayString SavedCurveNames()
{
    wxArrayString names;
    const wxString folder = CurveFolder();
    if (!wxDir::Exists(folder))
        return names;
    const wxDir dir(folder);
    wxString name;
    for (bool bMore = dir.IsOpened() && dir.GetFirst(&name, "*.crv", wxDIR_FILES); bMore;
         bMore = dir.GetNext(&name))
        names.Add(name);
    return names;
}

bool IsCurveName(const wxString& name)
{
    return !name.empty() && name.find_first_of(EXCLUDED_CHARACTERS) == wxString::npos;
}
