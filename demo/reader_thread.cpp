#include "reader_thread.h"

#include <pthread.h>
#include <system_error>

namespace demo {

ReaderThread::ReaderThread()
{
    try {
        m_thread = std::thread([this] { serve(); });
        pthread_setname_np(m_thread.native_handle(), "reader");
    } catch (const std::system_error&) {
        // The frame reads, and takes longer.
    }
}

ReaderThread::~ReaderThread()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_stop = true;
    }
    m_changed.notify_all();
    if (m_thread.joinable())
        m_thread.join();
}

void ReaderThread::post(Job job)
{
    if (!m_thread.joinable()) {
        job();
        return;
    }
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_jobs.push_back(std::move(job));
    }
    m_changed.notify_one();
}

void ReaderThread::serve()
{
    std::unique_lock<std::mutex> lock(m_mutex);
    while (true) {
        m_changed.wait(lock, [this] { return m_stop || !m_jobs.empty(); });
        if (m_stop)
            return;
        const Job job = std::move(m_jobs.front());
        m_jobs.pop_front();
        lock.unlock();
        job();
        lock.lock();
    }
}

} // namespace demo
