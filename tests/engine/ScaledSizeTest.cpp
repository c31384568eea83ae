// Which pixels a decimated copy takes.
#include "engine/ScaledSize.h"

#include <gtest/gtest.h>

TEST(ScaledSize, TakesEveryNthPixelAndNoneBeyondTheImage)
{
    const struct {
        std::int32_t w, h, rows, scaledWidth, scaledHeight, stepX, stepY;
    } cases[] = {
        {3000, 2000, 500, 750, 500, 4, 4}, {1000, 1700, 500, 332, 566, 3, 3},
        {999, 999, 500, 999, 999, 1, 1},   {1000, 1000, 500, 500, 500, 2, 2},
        {4000, 400, 500, 4000, 400, 1, 1}, {3, 2000, 500, 0, 500, 0, 4}, // too narrow for its height
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.w << " x " << c.h << ", rows " << c.rows);
        const ScaledSize size = Decimated(c.w, c.h, c.rows);
        EXPECT_EQ(c.scaledWidth, size.nWidth);
        EXPECT_EQ(c.scaledHeight, size.nHeight);
        EXPECT_EQ(c.stepX, size.nStepX);
        EXPECT_EQ(c.stepY, size.nStepY);
    }
    for (std::int32_t w = 1; w <= 700; w += 13)
        for (std::int32_t h = 1; h <= 3000; h += 7) {
            const ScaledSize size = Decimated(w, h, 300);
            ASSERT_LE((size.nHeight - 1) * size.nStepY, h - 1) << w << " x " << h;
            ASSERT_LE((size.nWidth - 1) * size.nStepX, w - 1) << w << " x " << h;
            ASSERT_TRUE(h < 300 ? size.nHeight == h : size.nHeight >= 300 && size.nHeight < 600);
        }
}
