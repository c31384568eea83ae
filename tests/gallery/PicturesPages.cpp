// The program's pictures on light and on dark windows, as they are and enlarged.
#include "resources/Pictures.h"
#include "tests/gallery/Gallery.h"

#include <wx/dcclient.h>
#include <wx/frame.h>
#include <wx/icon.h>

#include <algorithm>
#include <utility>

namespace LS::Gallery {

namespace {

using LS::Resources::Command;
using LS::Resources::Form;
using LS::Resources::Hand;

using Row = std::vector<wxBitmap>;

constexpr int GAP = 10;
constexpr int FACTOR = 4;

const wxColour LIGHT(246, 245, 244);
const wxColour DARK(53, 53, 53);

wxBitmap Enlarged(const wxBitmap& bitmap)
{
    const wxImage image = bitmap.ConvertToImage();
    return wxBitmap(
        image.Scale(image.GetWidth() * FACTOR, image.GetHeight() * FACTOR, wxIMAGE_QUALITY_NEAREST));
}

Row Enlarged(Row row)
{
    std::ranges::transform(row, row.begin(), [](const wxBitmap& bitmap) { return Enlarged(bitmap); });
    return row;
}

Row Icons(std::initializer_list<int> sizes)
{
    const wxIconBundle icons = LS::Resources::ApplicationIcon();
    Row row;
    for (const int nSize : sizes)
        row.emplace_back(icons.GetIcon(wxSize(nSize, nSize)));
    return row;
}

Row Commands(std::initializer_list<Command> commands)
{
    Row row;
    for (const Command command : commands) {
        row.push_back(CommandPicture(command).GetBitmap(wxDefaultSize));
        row.push_back(CommandPicture(command, Form::Disabled).GetBitmap(wxDefaultSize));
    }
    return row;
}

Row Hands()
{
    return {wxBitmap(HandCursor(Hand::Open)), wxBitmap(HandCursor(Hand::Gripping))};
}

/// Rows of pictures, one below the other.
class Sheet : public wxFrame {
public:
    Sheet(std::vector<Row> rows, const wxColour& background)
        : wxFrame(nullptr, wxID_ANY, "Pictures"), m_rows(std::move(rows))
    {
        SetBackgroundColour(background);
        SetIcons(LS::Resources::ApplicationIcon());
        SetClientSize(740, 500);
        Bind(wxEVT_PAINT, [this](wxPaintEvent&) { Draw(); });
    }

private:
    void Draw()
    {
        wxPaintDC dc(this);
        int y = GAP;
        for (const Row& row : m_rows) {
            int x = GAP, nHeight = 0;
            for (const wxBitmap& bitmap : row) {
                dc.DrawBitmap(bitmap, x, y, true);
                x += bitmap.GetWidth() + GAP;
                nHeight = std::max(nHeight, bitmap.GetHeight());
            }
            y += nHeight + GAP;
        }
    }

    std::vector<Row> m_rows;
};

wxTopLevelWindow* CommandSheet(const wxColour& background)
{
    const Row tools = Commands({Command::New, Command::CreateHDR, Command::Save});
    const Row buttons = Commands({Command::Add, Command::Remove, Command::MoveUp, Command::MoveDown});
    return new Sheet({tools, buttons, Hands(), Enlarged(tools), Enlarged(buttons), Enlarged(Hands())},
                     background);
}

wxTopLevelWindow* IconSheet(const wxColour& background)
{
    return new Sheet({Icons({256, 128, 64, 48, 32, 24, 16}), Enlarged(Icons({48, 32, 24, 16}))}, background);
}

} // namespace

std::vector<Page> PicturesPages()
{
    return {
        {"commands-light", [] { return CommandSheet(LIGHT); }},
        {"commands-dark", [] { return CommandSheet(DARK); }},
        {"icons-light", [] { return IconSheet(LIGHT); }},
        {"icons-dark", [] { return IconSheet(DARK); }},
    };
}

} // namespace LS::Gallery
