// Runs the headless program as a user does.
#pragma once

#include <string>
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
    double interruptAfter = -1;           ///< seconds until an interrupt is sent; negative for none
    long fileSizeLimit = -1;              ///< bytes that no file may exceed; negative for none
    long memoryLimit = -1;                ///< bytes of address space; negative for none
    double timeLimit = -1;                ///< seconds until it is killed, code 137; negative for none
    std::string output;                   ///< where its output goes instead of being caught
};

ProgramRun RunProgram(const std::vector<std::string>& vsArguments, const RunOptions& options = {});

} // namespace LS::Tests
