// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

#include <functional>
#include <memory>

namespace halvane {

/// Brings calls from any thread to the thread on which it lives. They run there in the order in
/// which they came, each in a turn of the event loop of its own, so that windows are drawn in
/// between. Calls that have not run when the mailbox is destroyed never run.
///
/// Calls cross from one thread to the other under one mutex, which the thread sanitizer sees:
/// posting releases it after writing a call, and delivery acquires it before reading that call.
/// Qt's event queue carries no data. It only wakes the mailbox, with at most one event under way
/// however many calls wait.
class Mailbox : public QObject {
    Q_OBJECT

    struct Box;

  public:
    using Call = std::function<void()>;

    /// Where to post. May outlive the mailbox; calls then never run. Any thread.
    class Address {
      public:
        /// Destroys the call when the mailbox is no more.
        void post(Call call) const;

      private:
        friend class Mailbox;
        explicit Address(std::shared_ptr<Box> box)
            : m_box(std::move(box)) {}
        std::shared_ptr<Box> m_box;
    };

    explicit Mailbox(QObject* parent = nullptr);
    ~Mailbox() override;

    [[nodiscard]] Address address() const { return Address(m_box); }

  Q_SIGNALS:
    /// For the mailbox itself.
    void filled();

  private:
    void deliverNext();

    const std::shared_ptr<Box> m_box;
};

} // namespace halvane
