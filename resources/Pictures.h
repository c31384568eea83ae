// The icon and the pictures of the program, held within it. Bundles hold a picture for displays of scale 2
// too.
#pragma once

#include <wx/bmpbndl.h>
#include <wx/iconbndl.h>
#include <wx/image.h>

namespace LS::Resources {

/// Pictures of commands: those of the tool bar are 26 x 26, Add and Remove 14 x 14, MoveUp and MoveDown 12
/// x 13.
enum class Command { New, CreateHDR, Save, Add, Remove, MoveUp, MoveDown };

enum class Form { Normal, Disabled };

/// A command's picture, with a mask or transparency around it. The disabled form is grey, legible on light
/// and dark themes.
wxBitmapBundle CommandPicture(Command command, Form form = Form::Normal);

/// The application's icon in 16, 24, 32, 48, 64, 128 and 256 pixels.
wxIconBundle ApplicationIcon();

/// The picture of the splash and about window: 481 x 294, 236 colours. It is light where that window draws
/// its text.
wxBitmapBundle SplashPicture();

enum class Hand { Open, Gripping };

/// A hand to make a cursor from: 32 x 32 with a mask, its hot spot set to the middle.
wxImage HandCursor(Hand hand);

} // namespace LS::Resources
