// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QUrl>
#include <QVariantMap>

#include <chrono>
#include <functional>

namespace halvane {

/// What a start of the program is asked to do.
struct StartRequest {
    QList<QUrl> files;
    QStringList actions;     ///< as the running instance reads them: NAME or NAME=ARGUMENT
    QString activationToken; ///< by which the desktop lets a window come forward; may be empty
};

enum class HandOver {
    nobodyThere, ///< no other instance runs
    done,
    refused,     ///< another instance runs and does not know what it was asked
    notAnswered, ///< another instance runs and does not answer; it may yet do what it was asked
    busSilent,   ///< the session's bus does not answer
    busLost,     ///< the bus went away meanwhile, as it does when the session ends
};

/// Gives the request to the instance that already runs, all files in one message and then the
/// actions, and waits until it is taken. Each answer is waited for for at most `patience`. Needs a
/// QCoreApplication. Nobody is there without a session bus. QtDBus goes on waiting for a bus that
/// is silent from the start, even when the process ends in the ordinary way.
HandOver handOver(const StartRequest& request,
                  std::chrono::milliseconds patience = std::chrono::seconds(15));

/// What the instance that runs says of its player.
struct PlayerAnswer {
    HandOver outcome = HandOver::nobodyThere;
    QVariantMap properties; ///< of org.mpris.MediaPlayer2.Player, when it is done
};

/// Asks the instance that already runs what it plays, as handOver() does.
PlayerAnswer askPlayer(std::chrono::milliseconds patience = std::chrono::seconds(15));

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
    /// Actions are refused with what this says against them; when it says nothing, they are
    /// activated.
    void setActionCheck(std::function<QString(const QString& action)> check);

  Q_SIGNALS:
    void activated(const QString& activationToken);
    void opened(const QList<QUrl>& files, const QString& activationToken);
    /// NAME, or NAME=ARGUMENT where the message had a parameter.
    void actionActivated(const QString& action, const QString& activationToken);

  private:
    QString m_connection;
    std::function<QString(const QString&)> m_checkAction;
    bool m_claimed = false;
};

} // namespace halvane
