// The question before a file is replaced.
#include "Widgets/ReplaceQuestion.h"

#include "Util/Paths.h"

#include <filesystem>
#include <system_error>

#include <wx/intl.h>
#include <wx/msgdlg.h>

namespace {

bool IsFile(const wxString& path)
{
    std::error_code error;
    const auto status = std::filesystem::status(LS::Util::NarrowPath(path.ToStdWstring()), error);
    return std::filesystem::exists(status) && !std::filesystem::is_directory(status);
}

} // namespace

bool MayBeWritten(wxWindow* parent, const wxString& path, wxString question, long icon)
{
    if (!IsFile(path))
        return true;
    question.Replace("%s", path, false); // a path is no format
    return wxMessageBox(question, wxGetTranslation("Tolvanic Lumistrand"), wxYES_NO | icon, parent) == wxYES;
}
