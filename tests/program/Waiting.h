// Waiting for what another process brings about.
#pragma once

#include <chrono>
#include <thread>

namespace LS::Tests {

/// Asks until the answer is yes. @return false if it doesn't become that in half a minute: sanitizers are
/// slow
template <typename Question> bool Becomes(const Question& question)
{
    using namespace std::chrono_literals;
    const auto end = std::chrono::steady_clock::now() + 30s;
    while (!question()) {
        if (std::chrono::steady_clock::now() > end)
            return false;
        std::this_thread::sleep_for(50ms);
    }
    return true;
}

} // namespace LS::Tests
