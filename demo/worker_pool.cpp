#include "worker_pool.h"

#include <chrono>
#include <pthread.h>
#include <string>
#include <system_error>
#include <utility>

namespace demo {

WorkerPool::WorkerPool(unsigned workers)
{
    m_workers.reserve(workers);
    while (m_workers.size() < workers && startWorker()) {
    }
}

/// Threads read the list of workers only in a round, and the first comes after the last is started.
bool WorkerPool::startWorker()
{
    const std::size_t part = m_workers.size() + 1; // part 0 is the caller's
    auto worker = std::make_unique<Worker>();
    try {
        worker->thread = std::thread([this, &served = *worker, part] { serve(served, part); });
    } catch (const std::system_error&) {
        return false; // the machine or its administrator gives no more: the others do the work
    }
    pthread_setname_np(worker->thread.native_handle(), ("particles-" + std::to_string(part)).c_str());
    m_workers.push_back(std::move(worker));
    return true;
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
