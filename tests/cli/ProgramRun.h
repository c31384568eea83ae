// Runs the headless program as a user does.
#pragma once

#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <sys/types.h>
#include <vector>

namespace LS::Tests {

struct ProgramRun {
    int code; ///< exit code, or 128 + the signal that ended it
    std::string out;
    std::string err;
};

struct RunOptions {
    std::string program;                  ///< another one than the headless program, by its path
    std::string folder;                   ///< working directory; empty for this process's
    std::vector<std::string> environment; ///< NAME=VALUE, added to this process's
    std::function<bool(pid_t)> when;      ///< is asked again and again, until it says true; then
    int signal = 0;                       ///< is sent to the program; 0 for none
    long fileSizeLimit = -1;              ///< bytes that no file may exceed; negative for none
    long memoryLimit = -1;                ///< bytes of address space; negative for none
    double timeLimit = -1;                ///< seconds until it is killed, code 137; negative for none
    std::string output;                   ///< where its output goes instead of being caught
};

ProgramRun RunProgram(const std::vector<std::string>& vsArguments, const RunOptions& options = {});

/// The processes that a process has started and not yet waited for.
std::vector<pid_t> ChildrenOf(pid_t nProcess);

using Arguments = std::vector<std::string>;
using Names = std::vector<std::string>;

/// A folder of photographs, one for outputs, and one for temporary files, which must be empty at the end.
class ProgramFixture : public testing::Test {
protected:
    ~ProgramFixture() override { EXPECT_EQ(Names{}, m_temporary.Names()); }

    /// Runs the program in the folder of outputs, unless the options name another one.
    ProgramRun Run(const Arguments& arguments, RunOptions options = {}) const;

    /// Fails unless these are all outputs, and no temporary file is left.
    void ExpectOnly(const Names& outputs) const;

    bool HasBegun() const { return !m_temporary.Names().empty(); } ///< whether a merge has its working folder

    TempFolder m_sources, m_outputs, m_temporary;
};

/// Fails if a text lacks a piece; shows the text.
void ExpectHas(const std::string& sPiece, const std::string& sText);

/// Fails unless a run prints nothing but one line with a piece of text, and ends with a code.
void ExpectFailure(int nCode, const std::string& sPiece, const ProgramRun& run);

} // namespace LS::Tests
