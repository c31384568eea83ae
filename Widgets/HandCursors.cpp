// Two hands of 32 x 32 pixels.
#include "Widgets/HandCursors.h"

#include <wx/image.h>

namespace {

// clang-format off
const char* const OPEN_HAND[] = {
    "32 32 5 1",
    "  c None",
    "X c black",
    "w c white",
    ". c #C6C6C6",
    "o c #848484",
    "                                ",
    "                                ",
    "                                ",
    "            XX   XX             ",
    "           XwwX XwwX            ",
    "          Xwww.Xwww.X XX        ",
    "       XX Xwww.Xwww.XXwwX       ",
    "      XwwXXwww.Xwww.Xwww.X      ",
    "      XwwwXXww.Xwww.Xwww.X      ",
    "      XwwwXXwwwXwww.Xwww.X      ",
    "      XwwwwXwwwXwwwXXww.X       ",
    "       XwwwXwwwXwwwXXww.X       ",
    "       XwwwXXwwXXwwXXww.X       ",
    "    XX XwwwwXwwXXwwXwww.X       ",
    "   XwwXXwwwwXwwXXwwXwww.X       ",
    "   XwwwXXwwwwwwwwwwwwww.X       ",
    "   Xwwwwwwwwwwwwwwwwwww.X       ",
    "   Xwwwwwwwwwwwwwwwwww.oX       ",
    "    Xwwwwwwwwwwwwwwwww.oX       ",
    "     Xwwwwwwwwwwwwwwww.oX       ",
    "      Xwwwwwwwwwwwwww..oX       ",
    "       Xwwwwwwwwwwwww.oXX       ",
    "        Xwwwwwwwwwww..oX        ",
    "        XXwwwwwwwwww.oX         ",
    "         Xwwwwwwwww..oX         ",
    "          X........ooX          ",
    "           XooooooooX           ",
    "            XXXXXXXX            ",
    "                                ",
    "                                ",
    "                                ",
    "                                ",
};
const char* const CLOSED_HAND[] = {
    "32 32 5 1",
    "  c None",
    "X c black",
    "w c white",
    ". c #C6C6C6",
    "o c #848484",
    "                                ",
    "                                ",
    "                                ",
    "                                ",
    "                                ",
    "                                ",
    "                                ",
    "                                ",
    "                                ",
    "            XXX XXX             ",
    "        XXXXwwwXwwwXXXXX        ",
    "       XwwwXwwwXwww.Xww.X       ",
    "       XwwwXwwwXwww.Xww.X       ",
    "       XwwwXwwwXwww.Xww.X       ",
    "       XwwwXwwwXwwwXwww.X       ",
    "       XwwwXXwwXwwwXwww.X       ",
    "     XXwwwwwwwwwwwwwwww.X       ",
    "     XwwwwXwwwwwwwwwww.oX       ",
    "     XwwwwwXwwwwwwwwww.oX       ",
    "      XwwwwXXwwwwwwwww.oX       ",
    "      XwwwwwXwwwwwww..oX        ",
    "       Xwwwwwwwwwwwww.oXX       ",
    "       XXwwwwwwwwwww..oX        ",
    "        XXwwwwwwwwww.oXX        ",
    "         Xwwwwwwwww..oX         ",
    "          X........ooX          ",
    "           XoooooooX            ",
    "            XXXXXXX             ",
    "                                ",
    "                                ",
    "                                ",
    "                                ",
};
// clang-format on

constexpr int HOT_SPOT = 16; // the middle, in both directions

} // namespace

wxCursor HandCursor(Grip grip)
{
    wxImage picture(grip == Grip::Open ? OPEN_HAND : CLOSED_HAND);
    picture.SetOption(wxIMAGE_OPTION_CUR_HOTSPOT_X, HOT_SPOT);
    picture.SetOption(wxIMAGE_OPTION_CUR_HOTSPOT_Y, HOT_SPOT);
    return wxCursor(picture);
}
