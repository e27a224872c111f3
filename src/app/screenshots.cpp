// SPDX-License-Identifier: MIT
#include "app/screenshots.h"

#include "app/halvane_app.h"
#include "app/window_registry.h"
#include "library/library_view_model.h"
#include "platform/log.h"

#include <QQuickWindow>

#include <algorithm>

namespace halvane {

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

namespace {

// Covers are decoded, panels slide and colours fade in the meantime.
constexpr auto settling = 2000ms;
constexpr auto betweenLooks = 100ms;
constexpr int looks = 300;

} // namespace

Screenshots::Screenshots(HalvaneApp& app, Clock& clock, const QString& folder, QObject* parent)
    : QObject(parent)
    , m_app(app)
    , m_clock(clock)
    , m_folder(folder)
    , m_pictures(pictures()) {
    std::reverse(m_pictures.begin(), m_pictures.end());
}

std::vector<Screenshots::Picture> Screenshots::pictures() {
    auto* library = m_app.library();
    const auto nothing = [] {};
    return {
        {u"albums"_s, u"main"_s, [=] { library->goHome(); }, nothing},
        {u"artists"_s, u"main"_s, [=] { library->selectSidebarItem(SidebarItem::artists); },
         nothing},
        {u"tracks"_s, u"main"_s, [=] { library->selectSidebarItem(SidebarItem::tracks); }, nothing},
        {u"main"_s, u"main"_s,
         [=] {
             library->goHome();
             library->setShowNowPlayingPanel(true);
         },
         nothing},
        {u"chinese"_s, u"main"_s,
         [=] { library->setLanguageSetting(AppLanguage::simplifiedChinese); },
         [=] { library->setLanguageSetting(AppLanguage::english); }},
        {u"tidy-up"_s, u"main"_s, [=] { library->setShowMaintenance(true); },
         [=] { library->setShowMaintenance(false); }},
        {u"full-screen"_s, u"main"_s, [=] { library->setShowFullPlayer(true); },
         [=] { library->setShowFullPlayer(false); }},
        {u"help"_s, u"help"_s, nothing, [this] { m_app.closeWindow(u"help"_s); }},
        {u"settings"_s, u"settings"_s, nothing, [this] { m_app.closeWindow(u"settings"_s); }},
        {u"panel"_s, u"panel"_s, nothing, [this] { m_app.closeWindow(u"panel"_s); }},
        {u"mini"_s, u"mini"_s, nothing, nothing},
    };
}

void Screenshots::start(bool expectsTracks) {
    if (!m_folder.mkpath(u"."_s)) {
        qCCritical(libraryLog, "no folder for pictures: %s", qUtf8Printable(m_folder.path()));
        Q_EMIT finished(false);
        return;
    }
    waitForTracks(expectsTracks ? looks : 0);
}

void Screenshots::waitForTracks(int looksLeft) {
    const bool ready = m_app.library()->trackCount() > 0 && m_app.library()->importProgress() < 0;
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
    picture.prepare();
    m_app.openWindow(picture.window);
    m_step = m_clock.after(settling, [this, picture] {
        take(picture);
        picture.tidy();
        next();
    });
}

void Screenshots::take(const Picture& picture) {
    auto* window = m_app.windows().visibleWindow(picture.window);
    const auto file = m_folder.filePath(picture.name + u".png"_s);
    if (window && window->grabWindow().save(file))
        return;
    m_complete = false;
    qCCritical(libraryLog, "no picture saved: %s", qUtf8Printable(file));
}

} // namespace halvane
