// The limit of open files, as the system tells it.
#include "Util/OpenFiles.h"

#include "tests/support/ResourceLimit.h"

#include <gtest/gtest.h>

#include <algorithm>

TEST(OpenFiles, TheLimitIsRaisedAndNeverLowered)
{
    const auto soft = [] {
        rlimit limit{};
        getrlimit(RLIMIT_NOFILE, &limit);
        return limit.rlim_cur;
    };
    rlimit limit{};
    ASSERT_EQ(0, getrlimit(RLIMIT_NOFILE, &limit));
    const rlim_t nMost = std::min<rlim_t>(limit.rlim_max, 16384);
    for (const rlim_t nBefore : {rlim_t{256}, nMost, limit.rlim_max}) {
        SCOPED_TRACE(nBefore);
        const LS::Tests::ResourceLimit before(RLIMIT_NOFILE, nBefore);
        LS::Util::AllowManyOpenFiles();
        EXPECT_EQ(std::max(nBefore, nMost), soft());
    }
}
