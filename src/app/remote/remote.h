// SPDX-License-Identifier: MIT
#pragma once

#include "app/remote/remote_action.h"

#include <QObject>

#include <functional>
#include <vector>

namespace halvane {

class HalvaneApp;

/// Does what is asked of the player from outside. At the program's start, and while files are being
/// opened, an action about tracks waits until there are some. Main thread.
class Remote : public QObject {
    Q_OBJECT

  public:
    /// `canHide` says whether a program without windows could be reached. The application must
    /// outlive this object.
    Remote(HalvaneApp& app, std::function<bool()> canHide, QObject* parent = nullptr);

    void run(const RemoteAction& action);
    /// Files are being opened. The first of them will play, which is what a waiting "Play" wants.
    void filesComing();

  private:
    [[nodiscard]] bool isLibraryComing() const;
    void goOn();
    void perform(const RemoteAction& action);
    void seek(const RemoteAction& action);
    void love(std::optional<bool> on);
    void showOrHide();

    HalvaneApp& m_app;
    std::function<bool()> m_canHide;
    std::vector<RemoteAction> m_waiting;
    bool m_filesComing = false;
};

} // namespace halvane
