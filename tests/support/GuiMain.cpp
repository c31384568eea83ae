// The main function of the test programs with windows: an application whose run is the tests.
#include "tests/support/TestProcess.h"
#include "tests/support/WindowApp.h"

#include <gtest/gtest.h>

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    LS::Tests::PrepareTestProcess();
    return LS::Tests::RunWithWindows(argc, argv, [] { return RUN_ALL_TESTS(); });
}
