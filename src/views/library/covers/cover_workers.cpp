// SPDX-License-Identifier: MIT
#include "views/library/covers/cover_workers.h"

#include <algorithm>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

namespace halvane::views {

struct CoverWorkers::Crew : std::enable_shared_from_this<CoverWorkers::Crew> {
    using Time = std::chrono::steady_clock::time_point;
    struct Job {
        QByteArray disk;
        Read read;
    };
    struct Reading {
        QByteArray disk;
        Time since;
        bool isHeldUp = false; // its place has been lent
    };
    using Lock = std::unique_lock<std::mutex>;

    explicit Crew(std::chrono::milliseconds time)
        : patience(time) {}

    const std::chrono::milliseconds patience;
    std::mutex mutex; // guards what follows
    std::condition_variable changed;
    std::deque<Job> waiting;
    std::vector<Reading*> readings; // under way, each on the stack of its thread
    int taken = 0;                  // places
    int returning = 0;              // threads that want a place again
    int rests = 0;                  // that run
    bool isWatched = false;
    bool isClosed = false;

    void startThreads() {
        const auto count =
            std::min<std::size_t>(static_cast<std::size_t>(places - taken), waiting.size());
        for (std::size_t i = 0; i < count; ++i) {
            ++taken;
            std::thread([self = shared_from_this()] { self->work(); }).detach();
        }
        if (waiting.size() > count)
            startWatch();
    }

    void startWatch() {
        if (!std::exchange(isWatched, true))
            std::thread([self = shared_from_this()] { self->watch(); }).detach();
    }

    // One thread with a place.
    void work() {
        Lock lock(mutex);
        while (!waiting.empty() && returning == 0) {
            Job job = std::move(waiting.front());
            waiting.pop_front();
            Rest rest;
            if (readingsOf(job.disk) < mostReads)
                rest = read(job, lock);
            if (rest && !isClosed) {
                ++rests;
                lock.unlock();
                rest();
                lock.lock();
                --rests;
            }
            lock.unlock();
            rest = nullptr; // dropping work tells those who wait for it
            job.read = nullptr;
            lock.lock();
        }
        --taken;
        changed.notify_all();
    }

    [[nodiscard]] std::ptrdiff_t readingsOf(const QByteArray& disk) const {
        return std::count_if(readings.begin(), readings.end(),
                             [&disk](const Reading* reading) { return reading->disk == disk; });
    }

    // Comes back with a place.
    Rest read(Job& job, Lock& lock) {
        Reading reading{job.disk, std::chrono::steady_clock::now()};
        readings.push_back(&reading);
        lock.unlock();
        Rest rest = job.read();
        lock.lock();
        readings.erase(std::find(readings.begin(), readings.end(), &reading));
        if (reading.isHeldUp) {
            ++returning;
            startWatch();
            changed.wait(lock, [this] { return taken < places || isClosed; });
            --returning;
            ++taken;
        }
        return rest;
    }

    // Lends places while somebody waits for one.
    void watch() {
        Lock lock(mutex);
        while (!waiting.empty() || (returning > 0 && !isClosed)) {
            changed.wait_for(lock, patience);
            const Time now = std::chrono::steady_clock::now();
            for (Reading* reading : readings) {
                if (reading->isHeldUp || now - reading->since < patience)
                    continue;
                reading->isHeldUp = true;
                --taken;
            }
            startThreads();
            changed.notify_all();
        }
        isWatched = false;
        changed.notify_all();
    }
};

CoverWorkers::CoverWorkers(std::chrono::milliseconds patience)
    : m_crew(std::make_shared<Crew>(patience)) {
}

CoverWorkers::~CoverWorkers() {
    close();
}

void CoverWorkers::start(const QByteArray& disk, Read read) {
    const std::lock_guard lock(m_crew->mutex);
    if (m_crew->isClosed)
        return;
    m_crew->waiting.push_back({disk, std::move(read)});
    m_crew->startThreads();
}

void CoverWorkers::close() {
    std::deque<Crew::Job> never; // destroyed without the lock
    Crew::Lock lock(m_crew->mutex);
    m_crew->isClosed = true;
    never.swap(m_crew->waiting);
    m_crew->changed.notify_all();
    m_crew->changed.wait(lock, [this] { return m_crew->rests == 0; });
}

} // namespace halvane::views
