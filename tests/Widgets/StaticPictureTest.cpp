// The picture control on the screen.
#include "Widgets/StaticPicture.h"

#include "tests/Widgets/WidgetTest.h"

using namespace LS::Tests;
using LS::Widgets::lsStaticPicture;

namespace {

class StaticPicture : public WidgetTest {
protected:
    /// Where the control shows red: the bounds of all its red pixels.
    wxRect RedArea() const
    {
        Pump(20);
        const wxImage shown = Screenshot(*m_picture);
        wxRect area;
        for (int y = 0; y < shown.GetHeight(); ++y)
            for (int x = 0; x < shown.GetWidth(); ++x)
                if (shown.GetRed(x, y) == 255 && shown.GetGreen(x, y) == 0)
                    area.Union(wxRect(x, y, 1, 1));
        return area;
    }

    lsStaticPicture* m_picture =
        new lsStaticPicture(m_panel, wxID_STATIC, wxNullBitmap, {20, 20}, {160, 160}, wxBORDER_NONE);
};

} // namespace

TEST_F(StaticPicture, ShrinksAndCentres)
{
    const struct {
        const char* name;
        wxSize image;
        wxRect shown;
    } cases[] = {
        {"small", {40, 20}, {60, 70, 40, 20}},
        {"large", {320, 240}, {0, 20, 160, 120}},
        {"high", {100, 400}, {60, 0, 40, 160}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        wxImage image(c.image);
        image.SetRGB(wxRect(c.image), 255, 0, 0);
        m_picture->SetImage(&image);
        EXPECT_EQ(c.shown, RedArea());
        m_picture->SetImage(nullptr);
        EXPECT_EQ(wxRect(), RedArea());
    }
}
