// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QSocketNotifier>

#include <memory>
#include <vector>

namespace halvane {

/// Turns the signals that ask a program to end (SIGTERM, SIGINT, SIGHUP) into one of Qt's, but for
/// those that it was started to ignore. One a process. Main thread.
class SignalWatch : public QObject {
    Q_OBJECT

  public:
    explicit SignalWatch(QObject* parent = nullptr);
    ~SignalWatch() override;

  Q_SIGNALS:
    void endRequested();

  private:
    std::unique_ptr<QSocketNotifier> m_notifier;
    std::vector<int> m_watched; ///< numbers of signals
};

} // namespace halvane
