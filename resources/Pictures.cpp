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
constexpr unsigned char SPLASH_2X[] = {
#include "splash-2x.inc"
};
constexpr unsigned char NEW_2X[] = {
#include "new-2x.inc"
};
constexpr unsigned char NEW_DISABLED_2X[] = {
#include "new_disabled-2x.inc"
};
constexpr unsigned char CREATE_HDR_2X[] = {
#include "create_hdr-2x.inc"
};
constexpr unsigned char CREATE_HDR_DISABLED_2X[] = {
#include "create_hdr_disabled-2x.inc"
};
constexpr unsigned char SAVE_2X[] = {
#include "save-2x.inc"
};
constexpr unsigned char SAVE_DISABLED_2X[] = {
#include "save_disabled-2x.inc"
};
constexpr unsigned char ADD_2X[] = {
#include "add-2x.inc"
};
constexpr unsigned char ADD_DISABLED_2X[] = {
#include "add_disabled-2x.inc"
};
constexpr unsigned char REMOVE_2X[] = {
#include "remove-2x.inc"
};
constexpr unsigned char REMOVE_DISABLED_2X[] = {
#include "remove_disabled-2x.inc"
};
constexpr unsigned char MOVE_UP_2X[] = {
#include "move_up-2x.inc"
};
constexpr unsigned char MOVE_UP_DISABLED_2X[] = {
#include "move_up_disabled-2x.inc"
};
constexpr unsigned char MOVE_DOWN_2X[] = {
#include "move_down-2x.inc"
};
constexpr unsigned char MOVE_DOWN_DISABLED_2X[] = {
#include "move_down_disabled-2x.inc"
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

/// A picture in both sizes.
wxBitmapBundle InTwoSizes(const wxBitmap& picture, Bytes doubled)
{
    return wxBitmapBundle::FromBitmaps(picture, wxBitmap(FromPng(doubled)));
}

wxBitmapBundle NormalPicture(Command command)
{
    switch (command) {
    case Command::New:
        return InTwoSizes(wxBitmap(new_xpm), NEW_2X);
    case Command::CreateHDR:
        return InTwoSizes(wxBitmap(create_hdr_xpm), CREATE_HDR_2X);
    case Command::Save:
        return InTwoSizes(wxBitmap(save_xpm), SAVE_2X);
    case Command::Add:
        return InTwoSizes(wxBitmap(add_xpm), ADD_2X);
    case Command::Remove:
        return InTwoSizes(wxBitmap(remove_xpm), REMOVE_2X);
    case Command::MoveUp:
        return InTwoSizes(wxBitmap(move_up_xpm), MOVE_UP_2X);
    case Command::MoveDown:
        return InTwoSizes(wxBitmap(move_down_xpm), MOVE_DOWN_2X);
    }
    return {};
}

wxBitmapBundle DisabledPicture(Command command)
{
    switch (command) {
    case Command::New:
        return InTwoSizes(wxBitmap(new_disabled_xpm), NEW_DISABLED_2X);
    case Command::CreateHDR:
        return InTwoSizes(wxBitmap(create_hdr_disabled_xpm), CREATE_HDR_DISABLED_2X);
    case Command::Save:
        return InTwoSizes(wxBitmap(save_disabled_xpm), SAVE_DISABLED_2X);
    case Command::Add:
        return InTwoSizes(wxBitmap(add_disabled_xpm), ADD_DISABLED_2X);
    case Command::Remove:
        return InTwoSizes(wxBitmap(remove_disabled_xpm), REMOVE_DISABLED_2X);
    case Command::MoveUp:
        return InTwoSizes(wxBitmap(move_up_disabled_xpm), MOVE_UP_DISABLED_2X);
    case Command::MoveDown:
        return InTwoSizes(wxBitmap(move_down_disabled_xpm), MOVE_DOWN_DISABLED_2X);
    }
    return {};
}

} // namespace

wxBitmapBundle CommandPicture(Command command, Form form)
{
    return form == Form::Normal ? NormalPicture(command) : DisabledPicture(command);
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

wxBitmapBundle SplashPicture()
{
    return InTwoSizes(wxBitmap(FromPng(SPLASH)), SPLASH_2X);
}

wxImage HandCursor(Hand hand)
{
    wxImage image(hand == Hand::Open ? hand_open_xpm : hand_grip_xpm);
    image.SetOption(wxIMAGE_OPTION_CUR_HOTSPOT_X, image.GetWidth() / 2);
    image.SetOption(wxIMAGE_OPTION_CUR_HOTSPOT_Y, image.GetHeight() / 2);
    return image;
}

} // namespace LS::Resources
