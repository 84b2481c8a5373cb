#pragma once

#include "measure.h"

#include <statistics/value.h>

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace demo {

/// Named threads that share a loop with the thread that asks for it.
class WorkerPool {
public:
    /// A part of the loop: from `begin` up to `end`.
    using Work = std::function<void(std::size_t begin, std::size_t end)>;

    /// Fewer workers, or none, where so many threads can't be started.
    explicit WorkerPool(unsigned workers);
    ~WorkerPool();
    WorkerPool(const WorkerPool&) = delete;
    WorkerPool& operator=(const WorkerPool&) = delete;

    /// Runs `work` over 0 to `count`, split evenly among the workers and the caller. Returns when all is
    /// done. `work` runs on several threads at once and must not throw.
    void run(std::size_t count, const Work& work);

    std::size_t size() const { return m_workers.size(); }

    /// Takes the share of time that each worker was busy since the last call.
    void measure();
    /// The share as last measured, in percent.
    statistics::CounterValue busyPercent(std::size_t worker) const { return m_workers[worker]->busyPercent; }

private:
    struct Worker {
        std::atomic<std::uint64_t> busyNanoseconds{0}; ///< written by the worker
        Rate busyRate;
        statistics::CounterValue busyPercent;
        std::thread thread;
    };

    bool startWorker();
    void serve(Worker& worker, std::size_t part);
    void runPart(std::size_t part) const;

    std::vector<std::unique_ptr<Worker>> m_workers;

    std::mutex m_mutex; ///< guards all below; `m_work` and `m_count` rest while parts are being run
    std::condition_variable m_started;
    std::condition_variable m_finished;
    const Work* m_work = nullptr;
    std::size_t m_count = 0;
    std::uint64_t m_round = 0; ///< counts the loops; a worker serves each once
    std::size_t m_busy = 0;    ///< workers that haven't finished the round
    bool m_stop = false;
};

} // namespace demo
