// SPDX-License-Identifier: MIT
#include "platform/mailbox.h"

#include <deque>
#include <mutex>
#include <utility>

namespace halvane {

struct Mailbox::Box {
    std::mutex mutex;       // guards what follows
    std::deque<Call> calls; // an event for the first is under way
    Mailbox* mailbox;       // null once it is destroyed
};

void Mailbox::Address::post(Call call) const {
    const std::lock_guard lock(m_box->mutex);
    if (!m_box->mailbox)
        return;
    m_box->calls.push_back(std::move(call));
    // The lock keeps the mailbox alive meanwhile. A queued connection only posts.
    if (m_box->calls.size() == 1)
        Q_EMIT m_box->mailbox->filled();
}

Mailbox::Mailbox(QObject* parent)
    : QObject(parent)
    , m_box(std::make_shared<Box>()) {
    m_box->mailbox = this;
    connect(this, &Mailbox::filled, this, &Mailbox::deliverNext, Qt::QueuedConnection);
}

Mailbox::~Mailbox() {
    std::deque<Call> never; // destroyed without the lock: a call may own another worker
    const std::lock_guard lock(m_box->mutex);
    m_box->mailbox = nullptr;
    never.swap(m_box->calls);
}

void Mailbox::deliverNext() {
    Call call;
    {
        const std::lock_guard lock(m_box->mutex);
        if (m_box->calls.empty())
            return;
        call = std::move(m_box->calls.front());
        m_box->calls.pop_front();
        if (!m_box->calls.empty())
            Q_EMIT filled();
    }
    call(); // may destroy this mailbox
}

} // namespace halvane
