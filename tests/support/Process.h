// Runs other programs, and waits for what they bring about.
#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <sys/types.h>
#include <thread>
#include <utility>
#include <vector>

namespace LS::Tests {

/// Asks until the answer is yes. @return false if it doesn't become that in time: sanitizers are slow
template <typename Question>
bool Becomes(const Question& question, std::chrono::seconds limit = std::chrono::seconds(30))
{
    using namespace std::chrono_literals;
    const auto end = std::chrono::steady_clock::now() + limit;
    while (!question()) {
        if (std::chrono::steady_clock::now() > end)
            return false;
        std::this_thread::sleep_for(50ms);
    }
    return true;
}

struct ProcessStart {
    std::string program;
    std::vector<std::string> arguments, environment; ///< NAME=VALUE, added to this process's
    std::string output, error;                       ///< files for its streams; may be one
    std::string folder{};                            ///< working directory; empty for this process's
    std::function<void()> prepare = [] {};           ///< called in the new process
};

/// A program that was started. It is killed when this object goes.
class Process {
public:
    Process() = default; ///< none
    explicit Process(const ProcessStart& start);
    Process(Process&& other) noexcept : m_nId(std::exchange(other.m_nId, -1)), m_sOutput(other.m_sOutput) {}
    Process& operator=(Process&& other) noexcept;
    ~Process() { Kill(); }

    /// @return the exit code, 128 + the signal that ended it, or -1 if it still runs after a while
    int WaitForExit();
    bool IsRunning() const;
    pid_t Id() const { return m_nId; }
    void Signal(int nSignal) const;
    void Kill(); ///< ends it at once

    std::string Output() const;

private:
    pid_t m_nId = -1;
    std::string m_sOutput;
};

} // namespace LS::Tests
