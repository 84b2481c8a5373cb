#include "worker_pool.h"

#include <chrono>
#include <pthread.h>
#include <string>

namespace demo {

WorkerPool::WorkerPool(unsigned workers)
{
    for (unsigned i = 0; i < workers; ++i)
        m_workers.push_back(std::make_unique<Worker>());
    // Part 0 is the caller's. Threads start when the list is complete, since they read its size.
    for (std::size_t i = 0; i < m_workers.size(); ++i) {
        Worker& worker = *m_workers[i];
        worker.thread = std::thread([this, &worker, i] { serve(worker, i + 1); });
        const std::string name = "particles-" + std::to_string(i + 1);
        pthread_setname_np(worker.thread.native_handle(), name.c_str());
    }
}

WorkerPool::~WorkerPool()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_stop = true;
    }
    m_started.notify_all();
    for (const auto& worker : m_workers)
        worker->thread.join();
}

void WorkerPool::run(std::size_t count, const Work& work)
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_work = &work;
        m_count = count;
        m_busy = m_workers.size();
        ++m_round;
    }
    m_started.notify_all();
    runPart(0);
    std::unique_lock<std::mutex> lock(m_mutex);
    m_finished.wait(lock, [this] { return m_busy == 0; });
}

void WorkerPool::runPart(std::size_t part) const
{
    const std::size_t parts = m_workers.size() + 1;
    (*m_work)(m_count * part / parts, m_count * (part + 1) / parts);
}

void WorkerPool::serve(Worker& worker, std::size_t part)
{
    using Clock = std::chrono::steady_clock;
    std::uint64_t served = 0;
    std::unique_lock<std::mutex> lock(m_mutex);
    while (true) {
        m_started.wait(lock, [&] { return m_stop || m_round != served; });
        if (m_stop)
            return;
        served = m_round;
        lock.unlock();

        const auto start = Clock::now();
        runPart(part);
        const auto busy = std::chrono::duration_cast<std::chrono::nanoseconds>(Clock::now() - start);
        worker.busyNanoseconds += static_cast<std::uint64_t>(busy.count());

        lock.lock();
        if (--m_busy == 0)
            m_finished.notify_one();
    }
}

void WorkerPool::measure()
{
    const double now = clockSeconds();
    for (const auto& worker : m_workers) {
        const double seconds = static_cast<double>(worker->busyNanoseconds.load()) * 1e-9;
        worker->busyPercent = toValue(worker->busyRate.perSecond(seconds, now), 100);
    }
}

} // namespace demo
