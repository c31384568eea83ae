// A running instance_program, and what it says.
#pragma once

#include "Util/FileDescriptor.h"

#include <string>
#include <vector>

#include <sys/types.h>

namespace LS::Tests {

/// One process; killed, if it still runs, when this object goes.
class InstanceProcess {
public:
    /// @param vsArguments  the state and what follows it, see InstanceProgram.cpp
    explicit InstanceProcess(const std::vector<std::string>& vsArguments);
    InstanceProcess(InstanceProcess&& other) noexcept;
    InstanceProcess(const InstanceProcess&) = delete;
    InstanceProcess& operator=(const InstanceProcess&) = delete;
    ~InstanceProcess();

    pid_t Id() const { return m_nProcess; }
    int Output() const { return m_output.Get(); } ///< to wait for what it says

    /// The next line that it says; empty after its end, and after some seconds of silence.
    std::string Line();

    /// Everything that it still says, up to its end. One line, "/" between what it said.
    std::string Rest();

    void Kill(); ///< as the kernel would in need: nothing is cleaned up

private:
    pid_t m_nProcess;
    Util::FileDescriptor m_output;
    std::string m_sPending;
};

} // namespace LS::Tests
