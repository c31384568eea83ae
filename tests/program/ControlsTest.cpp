// How the controls of the program look and answer: with each input module, at scale 2, to wheel and keys.
#include "tests/program/WindowProgram.h"

#include <gtest/gtest.h>
#include <wx/imagpng.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <utility>

using namespace LS::Tests;

namespace fs = std::filesystem;

namespace {

// Within the window at scale 1.
const wxPoint BIT_DEPTH(140, 100);
const wxPoint EXPOSURE(400, 100);
const wxRect PREVIEW(100, 140, 600, 380);
const wxRect THUMBNAIL(15, 170, 100, 8);
const wxRect LIST(186, 80, 614, 330);

wxImage Part(const char* szWindow, const wxRect& part)
{
    return ScreenPicture({PlaceOf(szWindow).GetTopLeft() + part.GetTopLeft(), part.GetSize()});
}

std::size_t DifferentPixels(const wxImage& a, const wxImage& b)
{
    if (!a.IsOk() || !b.IsOk() || a.GetSize() != b.GetSize())
        return SIZE_MAX;
    std::size_t nDifferent = 0;
    for (int y = 0; y < a.GetHeight(); ++y)
        for (int x = 0; x < a.GetWidth(); ++x)
            nDifferent += a.GetRed(x, y) != b.GetRed(x, y) || a.GetGreen(x, y) != b.GetGreen(x, y) ||
                          a.GetBlue(x, y) != b.GetBlue(x, y);
    return nDifferent;
}

/// Merges the series, and chooses 8 bits, which wakes the sliders.
void MakeResult(const WindowProgram& program)
{
    EXPECT_TRUE(program.Merge());
    ClickAt(PlaceOf(FRAME_TITLE).GetTopLeft() + BIT_DEPTH);
    PressKeys({"Down", "Return"});
}

/// What a window shows once nothing changes any more.
wxImage SettledPictureOf(const char* szWindow)
{
    wxImage picture;
    EXPECT_TRUE(Becomes([&] {
        WaitUntilIdle();
        const wxImage before = std::exchange(picture, Part(szWindow, PlaceOf(szWindow).GetSize()));
        return DifferentPixels(before, picture) == 0;
    }));
    return picture;
}

/// Walks through the controls of the list and of the save dialog, and takes pictures on the way.
std::vector<wxImage> Walk(const WindowProgram& program)
{
    std::vector<wxImage> pictures;
    const auto step = [&pictures](const char* szWindow) {
        PressKeys({"Tab"});
        pictures.push_back(SettledPictureOf(szWindow));
    };
    for (int i = 0; i < 6; ++i) {
        step(FRAME_TITLE);
        pictures.back().SetRGB(LIST, 0, 0, 0); // the library's grid, whose frame and lines differ
    }
    MakeResult(program);
    PressKeys({"ctrl+s"});
    EXPECT_TRUE(WaitUntilActive(PICTURE_DIALOG));
    for (int i = 0; i < 4; ++i)
        step(PICTURE_DIALOG);
    return pictures;
}

} // namespace

TEST(Controls, ANotchOfTheWheelMakesThePreviewAnew)
{
    WindowProgram program;
    ASSERT_TRUE(program.StartWithSeries(640, 480));
    MakeResult(program);
    for (const int nButton : {4, 5}) {
        const wxImage before = Part(FRAME_TITLE, PREVIEW);
        ClickAt(PlaceOf(FRAME_TITLE).GetTopLeft() + EXPOSURE, nButton);
        EXPECT_TRUE(Becomes([&] { return DifferentPixels(before, Part(FRAME_TITLE, PREVIEW)) > 10000; }));
    }
}

// One of the modules gives what has the focus a window of its own on the screen.
TEST(Controls, InputModulesShowTheSame)
{
    WindowProgram program;
    const std::string sSettings = program.Folder().File("home/.config/gtk-3.0");
    fs::create_directories(sSettings);
    WriteText(sSettings + "/settings.ini", "[Settings]\ngtk-cursor-blink=0\n");
    std::vector<std::vector<wxImage>> walks;
    for (const char* szModule : {"gtk-im-context-simple", "xim"}) {
        program.Set(std::string("GTK_IM_MODULE=") + szModule);
        ASSERT_TRUE(program.StartWithSeries(640, 480));
        walks.push_back(Walk(program));
        program.Kill();
        EXPECT_TRUE(WaitUntilGone(FRAME_TITLE));
    }
    // The toolkit's own marks may differ, 29 pixels at times; old pixels behind a control are 64 and more.
    constexpr std::size_t TOOLKITS_MARKS = 32;
    for (std::size_t i = 0; i < walks[0].size(); ++i)
        EXPECT_LE(DifferentPixels(walks[0][i], walks[1][i]), TOOLKITS_MARKS) << "step " << i;
}

TEST(Controls, PicturesAreSharpAtScale2)
{
    WindowProgram program;
    program.Set("GDK_SCALE=2");
    wxImage stripes(640, 480); // two columns black, two white: every other column of the display
    for (int x = 0; x < 640; ++x) {
        const unsigned char grey = x / 2 % 2 == 0 ? 0 : 255;
        stripes.SetRGB(wxRect(x, 0, 1, 480), grey, grey, grey);
    }
    wxImage::AddHandler(new wxPNGHandler);
    const std::string sPath = program.Folder().File("stripes.png");
    ASSERT_TRUE(stripes.SaveFile(sPath, wxBITMAP_TYPE_PNG));
    ASSERT_TRUE(program.StartToMainWindow({"open|" + sPath}));
    EXPECT_TRUE(Becomes([] {
        const wxRect part(THUMBNAIL.GetTopLeft() * 2, THUMBNAIL.GetSize() * 2);
        const wxImage shown = Part(FRAME_TITLE, part);
        int nEdges = 0;
        for (int x = 1; x < shown.GetWidth(); ++x)
            nEdges += std::abs(shown.GetRed(x, 0) - shown.GetRed(x - 1, 0)) > 200;
        return nEdges > shown.GetWidth() * 9 / 10; // the frame takes a little of the width
    }));
    ASSERT_TRUE(PressKeysIn(FRAME_TITLE, {"ctrl+q"}));
    EXPECT_EQ(0, program.WaitForExit());
    EXPECT_EQ("", program.Output());
}
