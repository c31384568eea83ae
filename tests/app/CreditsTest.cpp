// The form of the credits.
#include "app/Credits.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <string>
#include <vector>

TEST(Credits, NameEachGroupByGivenName)
{
    const struct {
        std::string heading;
        std::size_t names;
    } expected[] = {{"Developers:", 6}, {"Marketing:", 8}};
    const auto sections = CreditsSections();
    ASSERT_EQ(std::size(expected), sections.size());
    for (std::size_t n = 0; n < sections.size(); ++n) {
        SCOPED_TRACE(expected[n].heading);
        EXPECT_EQ(expected[n].heading, sections[n].front());
        const std::vector<std::string> names(sections[n].begin() + 1, sections[n].end());
        EXPECT_EQ(expected[n].names, names.size());
        EXPECT_TRUE(std::ranges::is_sorted(names));
        EXPECT_THAT(names, testing::Each(testing::MatchesRegex("[A-Z][a-z]+ [A-Z][a-z]+")));
    }
}
