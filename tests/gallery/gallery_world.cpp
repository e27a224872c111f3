// SPDX-License-Identifier: MIT
#include "gallery/gallery_world.h"

#include "library/library_concerns.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QGuiApplication>
#include <QTimer>

namespace halvane::test {

using namespace Qt::StringLiterals;

namespace {

constexpr std::array loved{0, 2, 8};
constexpr int missingTrack = 5;
constexpr int evictedTrack = 3;

} // namespace

GalleryWorld::GalleryWorld(int albums) {
    m_plan.albums = albums;
    m_plan.folder = m_environment.folder.filePath(u"music"_s);
    m_library = std::make_unique<LibraryViewModel>(m_environment);
    m_library->start();
    m_library->store()->append(makeLibrary(m_plan));
    m_library->catalog()->rebuildImportedAlbums();
    QObject::connect(&m_engine, &QQmlEngine::warnings, &m_engine,
                     [this](const QList<QQmlError>& warnings) {
                         for (const QQmlError& warning : warnings)
                             m_warnings.append(warning.toString());
                     });
    m_views = std::make_unique<views::ViewModule>(m_engine, *m_library);
    m_app = std::make_unique<HalvaneApp>(*m_library, m_environment.clock, m_engine,
                                         views::ViewModule::root(), m_environment.folder.path());
}

GalleryWorld::~GalleryWorld() {
    m_app.reset();
}

bool GalleryWorld::waitFor(const std::function<bool()>& condition, int milliseconds) {
    // processEvents() with a time limit spins, and takes the processor from what is waited for.
    constexpr int lookAgainMs = 5;
    QTimer wake;
    wake.setObjectName(u"waitFor"_s);
    wake.start(lookAgainMs);
    QEventLoop loop;
    QElapsedTimer since;
    since.start();
    while (!condition()) {
        if (since.elapsed() > milliseconds)
            return false;
        loop.processEvents(QEventLoop::WaitForMoreEvents);
    }
    return true;
}

QQuickWindow* GalleryWorld::open(const QString& id) {
    m_app->openWindow(id);
    QQuickWindow* found = nullptr;
    for (QWindow* window : QGuiApplication::topLevelWindows())
        if (window->objectName() == id)
            found = qobject_cast<QQuickWindow*>(window);
    if (!found)
        return nullptr;
    bool drawn = false;
    QMetaObject::Connection swap =
        QObject::connect(found, &QQuickWindow::frameSwapped, [&drawn] { drawn = true; });
    found->update();
    waitFor([&] { return drawn; });
    QObject::disconnect(swap);
    return found;
}

void GalleryWorld::furnish() {
    LibraryViewModel& library = *m_library;
    QAbstractListModel* tracks = library.browsing()->visibleTracks();
    library.browsing()->selectSidebarItem(SidebarItem::tracks);
    waitFor([&] { return tracks->rowCount() > 0; });
    const int pathRole = tracks->roleNames().key("path");
    QStringList paths;
    for (int row = 0; row < tracks->rowCount(); ++row)
        paths.append(tracks->index(row, 0).data(pathRole).toString());
    for (const int track : loved)
        library.userData()->toggleLoved(pathOf(track));
    for (int row = 30; row < paths.size() && row < 700; row += 8)
        library.userData()->toggleLoved(paths[row]);
    library.userData()->setRating(5, pathOf(0));
    library.userData()->setRating(3, pathOf(1));
    const std::array playlists{std::pair(u"Late evenings"_s, 42), std::pair(u"Road trip"_s, 118),
                               std::pair(u"雨天"_s, 27)};
    int next = 3;
    for (const auto& [name, count] : playlists) {
        QStringList chosen;
        for (int i = 0; i < count; ++i)
            chosen.append(paths[(next += 7) % paths.size()]);
        library.playlists()->addTrackPaths(chosen, library.playlists()->createPlaylist(name));
    }
    library.equalizer()->saveCurrentEQPreset(u"Evening"_s);
    library.equalizer()->applyBuiltInEQPreset(u"rock"_s);
    library.equalizer()->setEqEnabled(true);
    library.transport()->setVolume(0.72);
    library.browsing()->goHome();
    const int albumRole = library.browsing()->visibleAlbums()->roleNames().key("albumId");
    const int titleRole = library.browsing()->visibleAlbums()->roleNames().key("title");
    waitFor([&] { return library.browsing()->visibleAlbums()->rowCount() >= m_plan.albums - 1; });
    for (int row = 0; row < library.browsing()->visibleAlbums()->rowCount(); ++row) {
        const QModelIndex index = library.browsing()->visibleAlbums()->index(row, 0);
        if (index.data(titleRole).toString() == u"Night Walk"_s)
            library.collections()->playAlbum(index.data(albumRole).toString());
    }
    QFile::remove(pathOf(missingTrack));
    m_environment.cloud->setEvicted({pathOf(evictedTrack)});
}

} // namespace halvane::test
