// SPDX-License-Identifier: MIT
#include "app/screenshots.h"

#include "app/halvane_app.h"
#include "app/windows/window_registry.h"
#include "library/browsing/album_list_model.h"
#include "library/browsing/browsing.h"
#include "library/browsing/view_state.h"
#include "library/import/importer.h"
#include "library/library_view_model.h"
#include "library/playback/collection_player.h"
#include "library/playback/player_display.h"
#include "library/user/language_setting.h"
#include "library/user/playlists.h"
#include "platform/log.h"
#include "presentation/l10n.h"

#include <QAbstractListModel>
#include <QQuickItem>
#include <QQuickWindow>

#include <algorithm>

namespace halvane {

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

namespace {

// Covers are decoded, panels slide and colours fade first. A window that draws nothing new for a
// while has settled; one that plays never does.
constexpr auto still = 500ms;
constexpr auto longestSettling = 2000ms;
constexpr auto betweenLooks = 100ms;
constexpr int looks = 300;
constexpr int fewLooks = 30;

QQuickItem* buttonWithTip(QQuickItem* within, const QString& tip) {
    if (within->property("tip") == tip)
        return within;
    for (QQuickItem* child : within->childItems())
        if (auto* button = buttonWithTip(child, tip))
            return button;
    return nullptr;
}

// Presses what only a view can open.
void press(QQuickWindow* window, const QString& tip) {
    if (auto* button = window ? buttonWithTip(window->contentItem(), tip) : nullptr)
        QMetaObject::invokeMethod(button, "clicked");
}

QVariant firstValue(QAbstractListModel* list, const char* role) {
    return list->index(0, 0).data(list->roleNames().key(role));
}

} // namespace

Screenshots::Screenshots(HalvaneApp& app, Clock& clock, const QString& folder, QObject* parent)
    : QObject(parent)
    , m_app(app)
    , m_clock(clock)
    , m_folder(folder) {
    for (const auto& [language, suffix] : {std::pair(AppLanguage::english, u"-en"_s),
                                           std::pair(AppLanguage::simplifiedChinese, u"-zh"_s)}) {
        auto views = pictures();
        views.front().prepare = [this, language = language, first = views.front().prepare] {
            m_app.library()->language()->setLanguageSetting(language);
            first();
        };
        for (auto& view : views)
            view.name += suffix;
        m_pictures.insert(m_pictures.end(), views.begin(), views.end());
    }
    std::reverse(m_pictures.begin(), m_pictures.end());
}

std::vector<Screenshots::Picture> Screenshots::pictures() {
    auto* library = m_app.library();
    const auto nothing = [] {};
    const auto pressEqualizer = [this, library] {
        press(m_app.windows().visibleWindow(u"main"_s),
              L10n::text(L10nKey::equalizer, library->language()->resolvedLanguage()));
    };
    const auto place = [=](SidebarItem item) {
        return [=] { library->browsing()->selectSidebarItem(item); };
    };
    return {
        {u"main-albums"_s, u"main"_s,
         [=] {
             library->browsing()->goHome();
             library->views()->setShowNowPlayingPanel(true);
             if (!library->player()->hasCurrentTrack() &&
                 library->browsing()->visibleAlbums()->rowCount() > 0)
                 library->collections()->playAlbum(
                     firstValue(library->browsing()->visibleAlbums(), "albumId").toString());
         },
         nothing},
        {u"main-artists"_s, u"main"_s, place(SidebarItem::artists), nothing},
        {u"main-tracks"_s, u"main"_s, place(SidebarItem::tracks), nothing},
        {u"main-loved"_s, u"main"_s, place(SidebarItem::loved), nothing},
        {u"main-playlist"_s, u"main"_s,
         [=] {
             library->browsing()->setSelectedPlaylistID(
                 firstValue(library->playlists(), "playlistId").toUuid());
         },
         nothing},
        {u"main-search"_s, u"main"_s,
         [=] {
             library->browsing()->goHome();
             library->browsing()->setSearchText(u"n"_s);
         },
         [=] { library->browsing()->setSearchText({}); }},
        {u"equalizer"_s, u"main"_s, pressEqualizer, pressEqualizer},
        {u"tidy-up"_s, u"main"_s, [=] { library->views()->setShowMaintenance(true); },
         [=] { library->views()->setShowMaintenance(false); }},
        {u"full-screen"_s, u"main"_s, [=] { library->views()->setShowFullPlayer(true); },
         [=] { library->views()->setShowFullPlayer(false); }},
        {u"help"_s, u"help"_s, nothing, [this] { m_app.closeWindow(u"help"_s); }},
        {u"settings"_s, u"settings"_s, nothing, [this] { m_app.closeWindow(u"settings"_s); }},
        {u"panel"_s, u"panel"_s, nothing, [this] { m_app.closeWindow(u"panel"_s); }},
        {u"mini"_s, u"mini"_s, nothing, [this] { m_app.closeWindow(u"mini"_s); }},
    };
}

void Screenshots::start(bool expectsTracks) {
    if (!m_folder.mkpath(u"."_s)) {
        qCCritical(libraryLog, "no folder for pictures: %s", qUtf8Printable(m_folder.path()));
        Q_EMIT finished(false);
        return;
    }
    // A restored library is there at once.
    waitForTracks(expectsTracks ? looks : fewLooks);
}

void Screenshots::waitForTracks(int looksLeft) {
    const bool ready =
        m_app.library()->trackCount() > 0 && !m_app.library()->importing()->isImporting();
    if (looksLeft <= 0 || ready)
        m_step = m_clock.after(betweenLooks, [this] { next(); });
    else
        m_step = m_clock.after(betweenLooks, [this, looksLeft] { waitForTracks(looksLeft - 1); });
}

void Screenshots::next() {
    if (m_pictures.empty()) {
        Q_EMIT finished(m_complete);
        return;
    }
    const auto picture = m_pictures.back();
    m_pictures.pop_back();
    m_app.openWindow(picture.window);
    picture.prepare();
    const auto settled = [this, picture] {
        disconnect(m_frames);
        m_step.reset();
        m_still.reset();
        take(picture);
        picture.tidy();
        next();
    };
    m_step = m_clock.after(longestSettling, settled);
    if (auto* window = m_app.windows().visibleWindow(picture.window))
        m_frames = connect(window, &QQuickWindow::frameSwapped, this,
                           [this, settled, left = m_pictures.size()] {
                               // A frame of the picture before may still have been on its way.
                               if (left == m_pictures.size())
                                   m_still = m_clock.after(still, settled);
                           });
}

void Screenshots::take(const Picture& picture) {
    auto* window = m_app.windows().visibleWindow(picture.window);
    const double scale = window ? window->effectiveDevicePixelRatio() : 1;
    const auto file = m_folder.filePath(u"%1-%2x.png"_s.arg(picture.name).arg(scale));
    if (window && window->grabWindow().save(file))
        return;
    m_complete = false;
    qCCritical(libraryLog, "no picture saved: %s", qUtf8Printable(file));
}

} // namespace halvane
