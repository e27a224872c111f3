// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QObject>
#include <QString>
#include <QUrl>

#include <chrono>

namespace halvane {

/// What a start of the program is asked to do.
struct StartRequest {
    QList<QUrl> files;
    QString action;          ///< of the desktop entry; empty: none
    QString activationToken; ///< by which the desktop lets a window come forward; may be empty
};

enum class HandOver {
    nobodyThere, ///< no other instance runs
    done,
    notAnswered, ///< another instance runs and does not answer; it may yet do what it was asked
    busSilent,   ///< the session's bus does not answer
    busLost,     ///< the bus went away meanwhile, as it does when the session ends
};

/// Gives the request to the instance that already runs, all files in one message, and waits until
/// it is taken. There are at most four answers to wait for, each for at most `patience`. Needs a
/// QCoreApplication. Nobody is there without a session bus. QtDBus goes on waiting for a bus that
/// is silent from the start, even when the process ends in the ordinary way.
HandOver handOver(const StartRequest& request,
                  std::chrono::milliseconds patience = std::chrono::seconds(15));

/// The application as org.freedesktop.Application shows it, under the name "org.halvane.Halvane":
/// other starts of the program and the desktop's launchers reach it here. Main thread.
class SingleInstance : public QObject {
    Q_OBJECT

  public:
    /// Takes the name of a D-Bus connection that outlives this object.
    explicit SingleInstance(const QString& connection, QObject* parent = nullptr);
    ~SingleInstance() override;

    /// Takes the application's name; false when another instance has it. To be called when the
    /// signals below are connected.
    bool claim();

  Q_SIGNALS:
    void activated(const QString& activationToken);
    void opened(const QList<QUrl>& files, const QString& activationToken);
    void actionActivated(const QString& action, const QString& activationToken);

  private:
    QString m_connection;
    bool m_claimed = false;
};

} // namespace halvane
