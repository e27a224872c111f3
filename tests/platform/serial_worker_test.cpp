// SPDX-License-Identifier: MIT
#include "platform/serial_worker.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <atomic>
#include <semaphore>
#include <sys/resource.h>
#include <thread>
#include <vector>

namespace halvane::test {
namespace {

void until(const std::function<bool()>& reached) {
    while (!reached())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

// Holds a job up until the test lets it go.
struct Hold {
    std::binary_semaphore begun{0}, release{0}, ended{0};
};

// A job that is held up, and owns what holds it up.
auto hanging(const std::shared_ptr<Hold>& hold) {
    return [hold](const SerialWorker::Job& job) {
        hold->begun.release();
        hold->release.acquire();
        const bool isCancelled = job.isCancelled();
        hold->ended.release();
        return isCancelled;
    };
}

TEST(SerialWorker, RunsJobsInOrderElsewhereAndBringsTheirResultsHere) {
    SerialWorker worker;
    std::vector<int> run; // by the worker's jobs, one after the other
    std::vector<int> taken;
    const auto here = std::this_thread::get_id();
    for (int round = 0; round < 20; ++round) { // the thread ends and begins between some of them
        for (int i = 0; i < 50; ++i)
            worker.run(
                [&run, here, i] {
                    EXPECT_NE(std::this_thread::get_id(), here);
                    run.push_back(i);
                    return std::make_unique<int>(i);
                },
                [&taken, here](const std::unique_ptr<int>& result) {
                    EXPECT_EQ(std::this_thread::get_id(), here);
                    taken.push_back(*result);
                });
        until([&] { return taken.size() == 50; });
        EXPECT_TRUE(std::is_sorted(taken.begin(), taken.end()));
        EXPECT_EQ(taken, run);
        taken.clear();
        run.clear();
    }
}

TEST(SerialWorker, DropsWhatIsCancelledWhereverItIs) {
    SerialWorker worker;
    std::string arrived;
    const auto arrive = [&arrived](char name) { arrived += name; };
    worker.run([] { return 'a'; }, arrive);
    worker.finish(); // its result waits for this thread
    const auto hold = std::make_shared<Hold>();
    bool isHangingJobTaken = false;
    worker.run(hanging(hold), [&](bool) { isHangingJobTaken = true; });
    hold->begun.acquire();
    std::atomic<bool> hasRun = false;
    worker.start([&](const SerialWorker::Job&) { hasRun = true; });
    worker.cancel();
    worker.run([] { return 'b'; }, arrive);
    hold->release.release();
    until([&] { return !arrived.empty(); });
    EXPECT_EQ(arrived, "b");
    EXPECT_FALSE(hasRun);
    EXPECT_FALSE(isHangingJobTaken);
}

TEST(SerialWorker, TellsARunningJobThatItIsCancelled) {
    SerialWorker worker;
    std::atomic<bool> hasSeen = false;
    std::binary_semaphore begun{0};
    worker.start([&](const SerialWorker::Job& job) {
        begun.release();
        while (!job.isCancelled())
            std::this_thread::yield();
        hasSeen = true;
    });
    begun.acquire();
    worker.cancel();
    worker.finish();
    EXPECT_TRUE(hasSeen);
}

TEST(SerialWorker, DoesNotWaitForAJobThatHangs) {
    const auto hold = std::make_shared<Hold>();
    bool isTaken = false, isNextTaken = false;
    {
        SerialWorker worker;
        worker.run(hanging(hold), [&](bool) { isTaken = true; });
        hold->begun.acquire();
        worker.leaveBehind();
        worker.run([] { return 0; }, [&](int) { isNextTaken = true; });
        until([&] { return isNextTaken; });
        worker.run(hanging(hold), [&](bool) { isTaken = true; });
        hold->begun.acquire();
    } // two threads are still held up
    hold->release.release();
    hold->ended.acquire();
    hold->release.release();
    hold->ended.acquire();
    QCoreApplication::processEvents();
    EXPECT_FALSE(isTaken);
}

TEST(SerialWorker, FinishesWhatHasToBeDone) {
    std::atomic<int> done = 0;
    SerialWorker worker;
    for (int i = 0; i < 100; ++i)
        worker.start([&](const SerialWorker::Job&) { ++done; });
    worker.finish();
    EXPECT_EQ(done, 100);
}

TEST(SerialWorker, PostsOnTheWayAndLetsItsOwnerGoMeanwhile) {
    auto worker = std::make_unique<SerialWorker>();
    std::vector<int> progress;
    worker->start([&](const SerialWorker::Job& job) {
        for (int i = 0; !job.isCancelled(); ++i)
            job.post([&progress, &worker, i] {
                progress.push_back(i);
                if (i == 20)
                    worker.reset();
            });
    });
    until([&] { return !worker; });
    EXPECT_EQ(progress.size(), 21U);
}

TEST(SerialWorker, RunsAtItsPriority) {
    SerialWorker low(SerialWorker::Priority::low), idle(SerialWorker::Priority::idle);
    int nice = 0, policy = -1;
    const int ours = ::getpriority(PRIO_PROCESS, 0);
    low.start([&](const SerialWorker::Job&) { nice = ::getpriority(PRIO_PROCESS, 0); });
    idle.start([&](const SerialWorker::Job&) {
        sched_param unused;
        ::pthread_getschedparam(::pthread_self(), &policy, &unused);
    });
    low.finish();
    idle.finish();
    EXPECT_EQ(nice, std::min(19, std::max(5, ours)));
    EXPECT_EQ(policy, SCHED_IDLE);
}

} // namespace
} // namespace halvane::test
