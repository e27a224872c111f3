// SPDX-License-Identifier: MIT
#include "platform/mailbox.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace halvane::test {
namespace {

TEST(Mailbox, BringsEveryCallOfTwoThreadsInTheOrderOfEach) {
    constexpr int each = 2000;
    Mailbox mailbox;
    std::vector<int> first, second; // only the calls touch them, on this thread
    const auto post = [address = mailbox.address()](std::vector<int>& into) {
        for (int i = 0; i < each; ++i)
            address.post([&into, i] { into.push_back(i); });
    };
    std::thread one(post, std::ref(first)), other(post, std::ref(second));
    while (first.size() < each || second.size() < each)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    one.join();
    other.join();
    EXPECT_TRUE(std::is_sorted(first.begin(), first.end()));
    EXPECT_TRUE(std::is_sorted(second.begin(), second.end()));
}

TEST(Mailbox, LetsOtherEventsInAndDeliversWithinACallThatWaits) {
    Mailbox mailbox;
    QObject context;
    std::string order;
    const auto until = [&order](std::size_t length) {
        while (order.size() < length)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    };
    for (const char name : {'1', '2', '3'})
        mailbox.address().post([&order, &context, name] {
            order += name;
            QMetaObject::invokeMethod(
                &context, [&order] { order += '.'; }, Qt::QueuedConnection);
        });
    until(6);
    EXPECT_EQ(order.substr(0, 4), "12.3");
    order.clear();
    mailbox.address().post([&] {
        mailbox.address().post([&order] { order += "inner "; });
        until(6);
        order += "outer";
    });
    until(11);
    EXPECT_EQ(order, "inner outer");
}

TEST(Mailbox, CanGoWhileItIsWrittenToAndWhileItDelivers) {
    for (int round = 0; round < 50; ++round) {
        auto mailbox = std::make_unique<Mailbox>();
        int calls = 0;
        std::thread writer([&, address = mailbox->address()] {
            for (int i = 0; i < 100; ++i)
                address.post([&] {
                    ++calls;
                    mailbox.reset();
                });
        });
        while (mailbox)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        writer.join();
        QCoreApplication::processEvents();
        EXPECT_EQ(calls, 1);
    }
}

} // namespace
} // namespace halvane::test
