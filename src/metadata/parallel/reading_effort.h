// SPDX-License-Identifier: MIT
#pragma once

#include "metadata/parallel/processor_time.h"

#include <cstddef>
#include <mutex>
#include <unordered_map>

namespace halvane {

/// How much processor time goes into each of several inputs. A thread that does not come back from
/// an input may work without end, which is the input's fault, or wait for a disk, which is not. Any
/// thread.
class ReadingEffort {
  public:
    /// The calling thread works on an input for as long as this lives.
    class Scope {
      public:
        Scope(ReadingEffort& effort, std::size_t input);
        ~Scope();
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;

      private:
        ReadingEffort& m_effort;
        std::size_t m_input;
    };

    /// What the thread at work on the input has spent on it. Zero when no thread works on it.
    [[nodiscard]] std::chrono::nanoseconds spentOn(std::size_t input) const;

  private:
    struct Worker {
        clockid_t clock;
        std::chrono::nanoseconds start;
    };

    mutable std::mutex m_mutex;
    std::unordered_map<std::size_t, Worker> m_workers; ///< guarded by the mutex
};

} // namespace halvane
