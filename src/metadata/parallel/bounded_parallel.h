// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <iterator>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

namespace halvane {

/// How many threads look at many files for a moment each. More threads than processors get in each
/// other's way, but a few more must go on where some are held up by a dead mount.
inline std::size_t lookingThreads() {
    return std::clamp<std::size_t>(std::thread::hardware_concurrency(), 4, 16);
}

/// Computes one result for each of a number of inputs on several threads, and does not wait for a
/// thread that is held up. After `patience` with one input its result stays empty, and a new thread
/// takes the place of the old one. The old one is left behind, and its later result is dropped.
template<typename Value>
class BoundedParallel {
  public:
    using Results = std::vector<std::optional<Value>>;
    struct Options {
        std::size_t threads = 8;
        std::chrono::milliseconds patience{20'000}; ///< with one input
        std::chrono::milliseconds reports{100};     ///< between two calls of `progress`
        std::function<bool()> isCancelled;
        std::function<void(std::size_t done)> progress; ///< called on the calling thread
    };
    /// Must own all that it uses, because a call that is held up outlives run().
    using Compute = std::function<Value(std::size_t index)>;

    /// How many results are handed over together. The first portion is small so that it comes soon.
    struct Portions {
        std::size_t first;
        std::size_t largest;
    };
    using Take = std::function<void(Results next)>;

    /// Blocks until every input has its result, was given up, or the work was cancelled.
    static Results run(std::size_t count, const Compute& compute, const Options& options) {
        Results all;
        all.reserve(count);
        stream(count, compute, options, {count, count}, [&all](Results next) {
            std::move(next.begin(), next.end(), std::back_inserter(all));
        });
        return all;
    }

    /// The same, but hands results over on the calling thread, in the order of the inputs, while
    /// later ones are computed. They come in portions, or as many as there are each time `reports`
    /// goes by.
    static void stream(std::size_t count, const Compute& compute, const Options& options,
                       Portions portions, const Take& take) {
        auto work = std::make_shared<Work>(count, compute);
        std::unique_lock lock(work->mutex);
        const std::size_t threads = std::min(count, options.threads);
        for (std::size_t i = 0; i < threads; ++i)
            work->startThread();
        std::size_t portion = portions.first;
        for (std::size_t taken = 0; taken < count;) {
            work->awaited = std::min(count, taken + portion);
            work->changed.wait_for(lock, options.reports, [&work] { return work->isAnswerable(); });
            work->cancelled = options.isCancelled && options.isCancelled();
            work->giveUpStuck(options.patience);
            // Nothing is computed any more, so results that are lacking stay empty.
            const std::size_t end = work->running > 0 ? work->ready : count;
            Results next = work->results(taken, std::min(end, taken + portions.largest));
            taken += next.size();
            const std::size_t done = work->done;
            lock.unlock();
            if (options.progress)
                options.progress(done);
            if (!next.empty()) {
                portion = std::min(2 * portion, portions.largest);
                take(std::move(next));
            }
            lock.lock();
        }
    }

  private:
    using Time = std::chrono::steady_clock::time_point;

    /// What one thread works on. A thread that was given up finds that out here.
    struct Slot {
        std::size_t current = none;
        Time since;
        bool isGivenUp = false;
    };
    static constexpr std::size_t none = static_cast<std::size_t>(-1);

    struct Output {
        std::optional<Value> result;
        bool isDone = false; ///< computed or given up
    };

    /// Shared by the caller and all threads, with those that are held up. Guarded by `mutex`.
    struct Work : std::enable_shared_from_this<Work> {
        Work(std::size_t count, Compute function)
            : outputs(count)
            , compute(std::move(function)) {}

        void startThread() {
            auto slot = std::make_shared<Slot>();
            slots.push_back(slot);
            ++running;
            std::thread([self = this->shared_from_this(), slot] { self->loop(*slot); }).detach();
        }

        void loop(Slot& slot) {
            std::unique_lock lock(mutex);
            while (!slot.isGivenUp && !cancelled && next < outputs.size()) {
                const std::size_t index = next++;
                slot.current = index;
                slot.since = std::chrono::steady_clock::now();
                lock.unlock();
                std::optional<Value> result(compute(index));
                lock.lock();
                if (slot.isGivenUp)
                    return; // the caller has counted this input and may be gone
                outputs[index].result = std::move(result);
                finish(slot);
            }
            --running;
            if (isAnswerable())
                changed.notify_one();
        }

        void finish(Slot& slot) {
            outputs[slot.current].isDone = true;
            slot.current = none;
            ++done;
            while (ready < outputs.size() && outputs[ready].isDone)
                ++ready;
            if (ready >= awaited)
                changed.notify_one();
        }

        /// Whether the caller need not wait any longer.
        [[nodiscard]] bool isAnswerable() const { return ready >= awaited || running == 0; }

        void giveUpStuck(std::chrono::milliseconds patience) {
            const Time now = std::chrono::steady_clock::now();
            for (std::size_t i = 0; i < slots.size(); ++i) {
                Slot& slot = *slots[i];
                if (slot.isGivenUp || slot.current == none || now - slot.since < patience)
                    continue;
                slot.isGivenUp = true;
                finish(slot);
                --running;
                startThread();
            }
        }

        Results results(std::size_t begin, std::size_t end) {
            Results moved;
            moved.reserve(end - begin);
            for (std::size_t i = begin; i < end; ++i)
                moved.push_back(std::move(outputs[i].result));
            return moved;
        }

        std::mutex mutex;
        std::condition_variable changed;
        std::vector<Output> outputs;
        std::vector<std::shared_ptr<Slot>> slots;
        Compute compute;
        std::size_t next = 0;
        std::size_t done = 0;
        std::size_t ready = 0;   ///< so many from the start are done
        std::size_t awaited = 0; ///< when so many are ready, the caller wants to know
        std::size_t running = 0;
        bool cancelled = false;
    };
};

} // namespace halvane
