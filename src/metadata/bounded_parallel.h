// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

namespace halvane {

/// For short looks at many files: more threads than processors only get in each other's way, but
/// one that hangs in a dead mount must not hold up the rest.
inline std::size_t lookingThreads() {
    return std::clamp<std::size_t>(std::thread::hardware_concurrency(), 4, 16);
}

/// Computes one result for each of a number of inputs on several threads, and does not wait for a
/// thread that is stuck: after `patience` with one input its result stays empty, and a fresh thread
/// takes its place. The stuck one is left behind; whatever it still computes is thrown away.
template<typename Result>
class BoundedParallel {
  public:
    struct Options {
        std::size_t threads = 8;
        std::chrono::milliseconds patience{20'000}; ///< with one input
        std::chrono::milliseconds reports{100};     ///< between two calls of `progress`
        std::function<bool()> isCancelled;
        std::function<void(std::size_t done)> progress; ///< called on the calling thread
    };
    /// Must own all that it uses: a stuck call outlives run().
    using Compute = std::function<Result(std::size_t index)>;

    /// Blocks until every input has its result, was given up, or the work was cancelled.
    static std::vector<std::optional<Result>> run(std::size_t count, const Compute& compute,
                                                  const Options& options) {
        auto work = std::make_shared<Work>(count, compute);
        std::unique_lock lock(work->mutex);
        const std::size_t threads = std::min(count, options.threads);
        for (std::size_t i = 0; i < threads; ++i)
            work->startThread();
        while (work->done < count && work->running > 0) {
            work->changed.wait_for(lock, options.reports);
            work->cancelled = options.isCancelled && options.isCancelled();
            work->giveUpStuck(options.patience);
            if (options.progress) {
                const std::size_t done = work->done;
                lock.unlock();
                options.progress(done);
                lock.lock();
            }
        }
        return std::move(work->results);
    }

  private:
    using Time = std::chrono::steady_clock::time_point;

    /// What one thread works on; its owner is told by `current` whether it was given up.
    struct Slot {
        std::size_t current = none;
        Time since;
        bool isGivenUp = false;
    };
    static constexpr std::size_t none = static_cast<std::size_t>(-1);

    /// Shared by the caller and all threads, the stuck ones too. Guarded by `mutex`.
    struct Work : std::enable_shared_from_this<Work> {
        Work(std::size_t count, Compute function)
            : results(count)
            , compute(std::move(function)) {}

        void startThread() {
            auto slot = std::make_shared<Slot>();
            slots.push_back(slot);
            ++running;
            std::thread([self = this->shared_from_this(), slot] { self->loop(*slot); }).detach();
        }

        void loop(Slot& slot) {
            std::unique_lock lock(mutex);
            while (!slot.isGivenUp && !cancelled && next < results.size()) {
                slot.current = next++;
                slot.since = std::chrono::steady_clock::now();
                lock.unlock();
                std::optional<Result> result(compute(slot.current));
                lock.lock();
                if (slot.isGivenUp)
                    return; // the caller has counted this input and may be gone
                results[slot.current] = std::move(result);
                slot.current = none;
                ++done;
            }
            --running;
            changed.notify_one();
        }

        void giveUpStuck(std::chrono::milliseconds patience) {
            const Time now = std::chrono::steady_clock::now();
            for (std::size_t i = 0; i < slots.size(); ++i) {
                Slot& slot = *slots[i];
                if (slot.isGivenUp || slot.current == none || now - slot.since < patience)
                    continue;
                slot.isGivenUp = true;
                ++done;
                --running;
                startThread();
            }
        }

        std::mutex mutex;
        std::condition_variable changed;
        std::vector<std::optional<Result>> results;
        std::vector<std::shared_ptr<Slot>> slots;
        Compute compute;
        std::size_t next = 0;
        std::size_t done = 0;
        std::size_t running = 0;
        bool cancelled = false;
    };
};

} // namespace halvane
