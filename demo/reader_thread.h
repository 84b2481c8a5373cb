#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>

namespace demo {

/// Reads beside the frame what takes longer than a frame may. The library lives in one thread and runs host
/// functors there; so a job touches nothing of the library, and leaves its result where the frame fetches it.
class ReaderThread {
public:
    using Job = std::function<void()>;

    ReaderThread();
    /// Waits for the job at hand and drops the others.
    ~ReaderThread();
    ReaderThread(const ReaderThread&) = delete;
    ReaderThread& operator=(const ReaderThread&) = delete;

    /// Jobs run one after another. Where no thread could be started they run here, at once. A job must not
    /// throw.
    void post(Job job);

private:
    void serve();

    std::mutex m_mutex; ///< guards the next three
    std::condition_variable m_changed;
    std::deque<Job> m_jobs;
    bool m_stop = false;
    std::thread m_thread;
};

} // namespace demo
