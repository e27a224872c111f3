// SPDX-License-Identifier: MIT
#pragma once

#include "app/halvane_app.h"
#include "gallery/gallery_environment.h"
#include "gallery/made_library.h"
#include "library/library_concerns.h"
#include "library/library_view_model.h"
#include "views/view_module.h"

#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QStringList>

namespace halvane::test {

/// The real controller, application and windows on a made-up library and a fake environment. One a
/// process at a time.
class GalleryWorld {
  public:
    explicit GalleryWorld(int albums);
    ~GalleryWorld();

    /// Puts everything that the sheets show in place: playlists, loved tracks, ratings, presets,
    /// missing, evicted and duplicate tracks, the first album playing.
    void furnish();

    LibraryViewModel& library() { return *m_library; }
    HalvaneApp& app() { return *m_app; }
    GalleryEnvironment& environment() { return m_environment; }
    QQmlEngine& engine() { return m_engine; }
    [[nodiscard]] const LibraryPlan& plan() const { return m_plan; }
    [[nodiscard]] QString pathOf(int firstAlbumTrack) const {
        return firstAlbumPath(m_plan, firstAlbumTrack);
    }

    /// Opens a window and waits until it has drawn a frame.
    QQuickWindow* open(const QString& id);
    /// Runs the event loop until the condition holds; false when it does not within the time.
    static bool waitFor(const std::function<bool()>& condition, int milliseconds = 20000);
    /// Every warning that QML gave.
    [[nodiscard]] const QStringList& warnings() const { return m_warnings; }

  private:
    GalleryEnvironment m_environment;
    LibraryPlan m_plan;
    std::unique_ptr<LibraryViewModel> m_library;
    QQmlEngine m_engine;
    std::unique_ptr<views::ViewModule> m_views;
    std::unique_ptr<HalvaneApp> m_app;
    QStringList m_warnings;
};

} // namespace halvane::test
