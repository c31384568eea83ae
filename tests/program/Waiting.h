// Waiting for what another process brings about.
#pragma once

#include <chrono>
#include <thread>

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

} // namespace LS::Tests
