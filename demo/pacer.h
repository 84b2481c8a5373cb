#pragma once

#include <chrono>
#include <thread>

namespace demo {

/// Holds frames back to a rate, for displays whose driver doesn't wait.
class Pacer {
public:
    void wait(float framesPerSecond)
    {
        using Clock = std::chrono::steady_clock;
        const auto now = Clock::now();
        m_next +=
            std::chrono::duration_cast<Clock::duration>(std::chrono::duration<float>(1 / framesPerSecond));
        // A frame that took too long isn't made up for by hurrying.
        if (m_next < now)
            m_next = now;
        std::this_thread::sleep_until(m_next);
    }

private:
    std::chrono::steady_clock::time_point m_next;
};

} // namespace demo
