// The limit of open files, as the system reports it.
#include "Util/OpenFiles.h"

#include "tests/support/ResourceLimit.h"

#include <gtest/gtest.h>

#include <algorithm>

TEST(OpenFiles, TheLimitIsRaisedAndNeverLowered)
{
    rlimit limit{};
    ASSERT_EQ(0, getrlimit(RLIMIT_NOFILE, &limit));
    for (const rlim_t nBefore : {rlim_t{256}, limit.rlim_max}) {
        const LS::Tests::ResourceLimit before(RLIMIT_NOFILE, nBefore);
        LS::Util::AllowManyOpenFiles();
        rlimit after{};
        getrlimit(RLIMIT_NOFILE, &after);
        EXPECT_EQ(std::max<rlim_t>(nBefore, std::min<rlim_t>(limit.rlim_max, 16384)), after.rlim_cur);
    }
}
