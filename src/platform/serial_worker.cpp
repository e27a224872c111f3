// SPDX-License-Identifier: MIT
#include "platform/serial_worker.h"

#include "platform/thread_check.h"

#include <algorithm>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <pthread.h>
#include <sys/resource.h>
#include <thread>

namespace halvane {

namespace {

// Applies to the calling thread, and to those that it starts.
void take(SerialWorker::Priority priority) {
    constexpr int nicer = 5;
    const sched_param none{};
    if (priority == SerialWorker::Priority::low)
        ::setpriority(PRIO_PROCESS, 0, std::max(nicer, ::getpriority(PRIO_PROCESS, 0)));
    else if (priority == SerialWorker::Priority::idle)
        ::pthread_setschedparam(::pthread_self(), SCHED_IDLE, &none);
}

} // namespace

struct SerialWorker::Queue {
    std::mutex mutex; // guards what follows
    std::condition_variable ended;
    std::deque<std::function<void()>> jobs; // without the one that runs
    bool hasThread = false;

    void workOff() {
        std::unique_lock lock(mutex);
        while (!jobs.empty()) {
            std::function<void()> job = std::move(jobs.front());
            jobs.pop_front();
            lock.unlock();
            job();
            job = nullptr; // what it owns may take long to free
            lock.lock();
        }
        hasThread = false;
        ended.notify_all();
    }
};

void SerialWorker::Job::post(Mailbox::Call call) const {
    m_owner.post([token = m_token, call = std::move(call)] {
        if (!token.stop_requested())
            call();
    });
}

SerialWorker::SerialWorker(Priority priority)
    : m_priority(priority)
    , m_queue(std::make_shared<Queue>()) {
}

SerialWorker::~SerialWorker() {
    cancel();
}

void SerialWorker::start(std::function<void(const Job&)> work) {
    assertOwnThread(m_mailbox);
    const Job job(m_generation.get_token(), m_mailbox.address());
    const std::lock_guard lock(m_queue->mutex);
    m_queue->jobs.emplace_back([job, work = std::move(work)] { work(job); });
    if (std::exchange(m_queue->hasThread, true))
        return;
    std::thread([queue = m_queue, priority = m_priority] {
        take(priority);
        queue->workOff();
    }).detach();
}

void SerialWorker::cancel() {
    m_generation.request_stop();
    m_generation = {};
    std::deque<std::function<void()>> never; // destroyed without the lock
    const std::lock_guard lock(m_queue->mutex);
    never.swap(m_queue->jobs);
}

void SerialWorker::leaveBehind() {
    cancel();
    m_queue = std::make_shared<Queue>();
}

void SerialWorker::finish() {
    std::unique_lock lock(m_queue->mutex);
    m_queue->ended.wait(lock, [this] { return !m_queue->hasThread; });
}

} // namespace halvane
