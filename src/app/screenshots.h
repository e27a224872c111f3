// SPDX-License-Identifier: MIT
#pragma once

#include "platform/clock.h"

#include <QDir>
#include <QObject>

#include <functional>
#include <memory>
#include <vector>

namespace halvane {

class HalvaneApp;

/// Saves a picture of every view and window in both languages, one after the other, once what is
/// being imported is there: VIEW-LANGUAGE-SCALE.png, as main-albums-en-2x.png. Main thread.
class Screenshots : public QObject {
    Q_OBJECT

  public:
    /// The application and the clock must outlive this object. `folder` is made if need be.
    Screenshots(HalvaneApp& app, Clock& clock, const QString& folder, QObject* parent = nullptr);

    /// Begins. With `expectsTracks` it waits longer for the first tracks to be listed.
    void start(bool expectsTracks);

  Q_SIGNALS:
    /// The pictures are there, or not all of them.
    void finished(bool complete);

  private:
    struct Picture {
        QString name;
        QString window;
        std::function<void()> prepare;
        std::function<void()> tidy;
    };

    std::vector<Picture> pictures();
    void waitForTracks(int looksLeft);
    void next();
    void take(const Picture& picture);

    HalvaneApp& m_app;
    Clock& m_clock;
    QDir m_folder;
    std::vector<Picture> m_pictures; ///< still to be taken, the next one last
    bool m_complete = true;
    std::unique_ptr<Timer> m_step;
    std::unique_ptr<Timer> m_still; ///< until the window counts as settled
    QMetaObject::Connection m_frames;
};

} // namespace halvane
