// Splits the file argument of the command line and of the second start.
#include "app/FileArgument.h"

#include <wx/tokenzr.h>

wxArrayString PathsOfFileArgument(const wxString& argument)
{
    return wxStringTokenize(argument.AfterFirst('|'), "|", wxTOKEN_DEFAULT);
}
