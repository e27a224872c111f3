// SPDX-License-Identifier: MIT
#pragma once

#include "platform/mailbox.h"

#include <functional>
#include <memory>
#include <stop_token>
#include <type_traits>
#include <utility>

namespace halvane {

/// Runs jobs one after the other on a thread of its own and brings their results back to the thread
/// on which it was made, which alone may use it. It is a member of whoever takes the results: once
/// that is gone, none arrives. The thread is started by the first of several jobs and ends after
/// the last.
///
/// A job may hang in a system call on a file, and then nobody waits for it: a worker that goes
/// leaves its running job behind. A job must therefore own all that it uses. What has to be done
/// before the program ends is waited for with finish().
///
/// Jobs and results each cross under one mutex. A job is written before start() releases the
/// queue's mutex and read after the thread has acquired it; a result goes through the mailbox in
/// the same way. The queue belongs to the worker and to its thread together, so that either may go
/// first. The stop token is the generation of a job: cancelling takes another one for the jobs to
/// come. Nothing is read on the strength of it, so it needs no order with anything else; and as it
/// is set on the thread that takes the results, a cancelled job's result is always known as such
/// there.
class SerialWorker {
  public:
    enum class Priority {
        usual,
        low,  ///< where processors are scarce the windows come first
        idle, ///< runs when nothing else wants the processor
    };

    /// What a job knows of itself. Good for as long as anybody holds it, on any thread.
    class Job {
      public:
        /// Whether nobody wants its result any more.
        bool isCancelled() const { return m_token.stop_requested(); }
        const std::stop_token& token() const { return m_token; }
        /// Calls on the worker's own thread, unless the job is cancelled by then.
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
    /// Drops what waits, and leaves a running job behind.
    ~SerialWorker();
    SerialWorker(const SerialWorker&) = delete;
    SerialWorker& operator=(const SerialWorker&) = delete;

    /// Runs a job after those that were asked for before.
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
    /// The same, and the next job does not wait for the one that runs now.
    void leaveBehind();
    /// Waits until every job that was asked for has run. Their results arrive as ever.
    void finish();

  private:
    struct Queue;

    const Priority m_priority;
    Mailbox m_mailbox;
    std::stop_source m_generation; ///< of the jobs asked for from now on
    std::shared_ptr<Queue> m_queue;
};

} // namespace halvane
