// Turns the embedded picture files into bitmaps.
#include "resources/Pictures.h"

#include "resources/pictures/add.xpm"
#include "resources/pictures/add_disabled.xpm"
#include "resources/pictures/create_hdr.xpm"
#include "resources/pictures/create_hdr_disabled.xpm"
#include "resources/pictures/hand_grip.xpm"
#include "resources/pictures/hand_open.xpm"
#include "resources/pictures/move_down.xpm"
#include "resources/pictures/move_down_disabled.xpm"
#include "resources/pictures/move_up.xpm"
#include "resources/pictures/move_up_disabled.xpm"
#include "resources/pictures/new.xpm"
#include "resources/pictures/new_disabled.xpm"
#include "resources/pictures/remove.xpm"
#include "resources/pictures/remove_disabled.xpm"
#include "resources/pictures/save.xpm"
#include "resources/pictures/save_disabled.xpm"

#include <wx/icon.h>
#include <wx/imagpng.h>
#include <wx/mstream.h>

#include <span>

namespace LS::Resources {

namespace {

using Bytes = std::span<const unsigned char>;
using Xpm = const char* const*;

// clang-format off
constexpr unsigned char ICON_16[] = {
#include "icon-16.inc"
};
constexpr unsigned char ICON_24[] = {
#include "icon-24.inc"
};
constexpr unsigned char ICON_32[] = {
#include "icon-32.inc"
};
constexpr unsigned char ICON_48[] = {
#include "icon-48.inc"
};
constexpr unsigned char ICON_64[] = {
#include "icon-64.inc"
};
constexpr unsigned char ICON_128[] = {
#include "icon-128.inc"
};
constexpr unsigned char ICON_256[] = {
#include "icon-256.inc"
};
constexpr unsigned char SPLASH[] = {
#include "splash.inc"
};
// clang-format on

/// By a handler of its own, so that it doesn't matter whether the program's are there yet.
wxImage FromPng(Bytes png)
{
    wxMemoryInputStream stream(png.data(), png.size());
    wxImage image;
    wxPNGHandler().LoadFile(&image, stream);
    return image;
}

Xpm CommandXpm(Command command, Form form)
{
    const bool bNormal = form == Form::Normal;
    switch (command) {
    case Command::New:
        return bNormal ? new_xpm : new_disabled_xpm;
    case Command::CreateHDR:
        return bNormal ? create_hdr_xpm : create_hdr_disabled_xpm;
    case Command::Save:
        return bNormal ? save_xpm : save_disabled_xpm;
    case Command::Add:
        return bNormal ? add_xpm : add_disabled_xpm;
    case Command::Remove:
        return bNormal ? remove_xpm : remove_disabled_xpm;
    case Command::MoveUp:
        return bNormal ? move_up_xpm : move_up_disabled_xpm;
    case Command::MoveDown:
        return bNormal ? move_down_xpm : move_down_disabled_xpm;
    }
    return nullptr;
}

} // namespace

wxBitmap CommandPicture(Command command, Form form)
{
    return wxBitmap(CommandXpm(command, form));
}

wxIconBundle ApplicationIcon()
{
    wxIconBundle icons;
    for (const Bytes png : {Bytes(ICON_16), Bytes(ICON_24), Bytes(ICON_32), Bytes(ICON_48), Bytes(ICON_64),
                            Bytes(ICON_128), Bytes(ICON_256)}) {
        wxIcon icon;
        icon.CopyFromBitmap(wxBitmap(FromPng(png)));
        icons.AddIcon(icon);
    }
    return icons;
}

wxBitmap SplashPicture()
{
    return wxBitmap(FromPng(SPLASH));
}

wxImage HandCursor(Hand hand)
{
    wxImage image(hand == Hand::Open ? hand_open_xpm : hand_grip_xpm);
    image.SetOption(wxIMAGE_OPTION_CUR_HOTSPOT_X, image.GetWidth() / 2);
    image.SetOption(wxIMAGE_OPTION_CUR_HOTSPOT_Y, image.GetHeight() / 2);
    return image;
}

} // namespace LS::Resources
