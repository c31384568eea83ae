// The main function of the test programs without windows.
#include "tests/support/TestProcess.h"

#include <gtest/gtest.h>

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    LS::Tests::PrepareTestProcess();
    return RUN_ALL_TESTS();
}
