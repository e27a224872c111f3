// SPDX-License-Identifier: MIT
#pragma once

#include "platform/mailbox.h"

#include <functional>
#include <memory>
#include <stop_token>
#include <type_traits>
#include <utility>

namespace halvane {

/// Runs jobs one after the other on a thread of its own, and brings their results back to the
/// thread that made the worker. Only that thread may use it. The worker is a member of the object
/// that takes the results, so that none arrives once the object is destroyed. The first of several
/// jobs starts the thread, which ends after the last.
///
/// A job may be held up by a disk, and nobody waits for it then: a worker that is destroyed leaves
/// its running job behind. A job must therefore own all that it uses. finish() waits for work that
/// has to be done before the program ends.
///
/// Jobs and results each cross under one mutex. A job is written before start() releases the
/// queue's mutex and read after the thread has acquired it; a result goes through the mailbox in
/// the same way. The worker and its thread share the queue, so that either may go first. The stop
/// token is a job's generation: cancelling gives later jobs another one. No other memory depends on
/// the token, so it needs no order with anything else. It is set on the thread that takes the
/// results, which therefore always recognises the result of a cancelled job.
class SerialWorker {
  public:
    enum class Priority {
        usual,
        low,  ///< the windows come first where processors are scarce
        idle, ///< runs when nothing else wants the processor
    };

    /// What a job knows of itself. Valid for as long as anybody holds it. Any thread.
    class Job {
      public:
        /// Whether nobody wants its result any more.
        [[nodiscard]] bool isCancelled() const { return m_token.stop_requested(); }
        [[nodiscard]] const std::stop_token& token() const { return m_token; }
        /// Calls on the thread that made the worker, unless the job is cancelled by then.
        void post(Mailbox::Call call) const;

      private:
        friend class SerialWorker;
        Job(std::stop_token token, Mailbox::Address owner)
            : m_token(std::move(token))
            , m_owner(std::move(owner)) {}
        std::stop_token m_token;
        Mailbox::Address m_owner;
    };

    /// Jobs, and the threads that they start, run at this priority.
    explicit SerialWorker(Priority priority = Priority::usual);
    /// Drops jobs that wait, and leaves a running job behind.
    ~SerialWorker();
    SerialWorker(const SerialWorker&) = delete;
    SerialWorker& operator=(const SerialWorker&) = delete;

    /// Runs a job after all earlier ones.
    void start(std::function<void(const Job&)> work);

    /// Runs `work`, which may take a Job, and then `done` with its result on this thread.
    template<typename Work, typename Done>
    void run(Work work, Done done) {
        start([work = std::move(work), done = std::move(done)](const Job& job) {
            auto result = [&] {
                if constexpr (std::is_invocable_v<const Work&, const Job&>)
                    return std::make_shared<std::invoke_result_t<const Work&, const Job&>>(
                        work(job));
                else
                    return std::make_shared<std::invoke_result_t<const Work&>>(work());
            }();
            job.post([result = std::move(result), done] { done(std::move(*result)); });
        });
    }

    /// Drops jobs that wait and results that have not arrived, and tells the running job.
    void cancel();
    /// Like cancel(), and the next job does not wait for the running one.
    void leaveBehind();
    /// Waits until every job has run. Their results arrive later, as usual.
    void finish();

  private:
    struct Queue;

    const Priority m_priority;
    Mailbox m_mailbox;
    std::stop_source m_generation; ///< of the jobs that are started from now on
    std::shared_ptr<Queue> m_queue;
};

} // namespace halvane
