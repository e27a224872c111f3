// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

#include <functional>
#include <memory>

namespace halvane {

/// Brings calls from any thread to the thread on which it lives. They run there in the order in
/// which they came, each in a turn of the event loop of its own, so that windows are drawn in
/// between. Calls that have not run when the mailbox goes never run.
///
/// All that crosses from one thread to the other does so under one mutex, which the thread
/// sanitizer sees; Qt only brings the word that there is something, which carries no data. Whoever
/// posts releases the mutex after writing a call, and whoever delivers acquires it before reading
/// that call. At most one such word is under way at a time, however many calls wait.
class Mailbox : public QObject {
    Q_OBJECT

    struct Box;

  public:
    using Call = std::function<void()>;

    /// Where to post. May outlive the mailbox: it then leads nowhere. Any thread.
    class Address {
      public:
        /// Where the mailbox has gone, the call is destroyed here.
        void post(Call call) const;

      private:
        friend class Mailbox;
        explicit Address(std::shared_ptr<Box> box)
            : m_box(std::move(box)) {}
        std::shared_ptr<Box> m_box;
    };

    explicit Mailbox(QObject* parent = nullptr);
    ~Mailbox() override;

    Address address() const { return Address(m_box); }

  Q_SIGNALS:
    /// For the mailbox itself.
    void filled();

  private:
    void deliverNext();

    const std::shared_ptr<Box> m_box;
};

} // namespace halvane
