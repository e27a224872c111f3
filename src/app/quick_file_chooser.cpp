// SPDX-License-Identifier: MIT
#include "app/quick_file_chooser.h"

#include "platform/log.h"

#include <QDir>
#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QStandardPaths>

namespace halvane {

using namespace Qt::StringLiterals;

namespace {

// The music folder, or the home folder where there is none.
QUrl startingFolder() {
    const auto music = QStandardPaths::writableLocation(QStandardPaths::MusicLocation);
    return QUrl::fromLocalFile(QDir(music).exists() ? music : QDir::homePath());
}

// The panel is drawn inside a window and needs this much room.
constexpr QSize leastRoom(640, 440);

// The style draws the path on white, whatever the window's colours are. The toolkit gives no way to
// it but the name of its class.
void darkenPath(const QQuickItem& within) {
    const auto children = within.childItems();
    for (auto* child : children) {
        if (child->inherits("QQuickFolderBreadcrumbBar"))
            if (auto* ground = child->property("background").value<QQuickItem*>())
                ground->setProperty("color", child->window()->color());
        darkenPath(*child);
    }
}

} // namespace

QuickFileChooser::QuickFileChooser(QQmlEngine& engine, const QUrl& viewsRoot)
    : m_engine(engine)
    , m_viewsRoot(viewsRoot) {
}

QQuickWindow* QuickFileChooser::openWindowFor(const FileChooserRequest& request,
                                              QWindow* inFront) const {
    QQmlComponent component(&m_engine, m_viewsRoot.resolved(QUrl(u"windows/ToolkitWindow.qml"_s)));
    auto* window = qobject_cast<QQuickWindow*>(component.create());
    Q_ASSERT(window);
    window->setTitle(request.title);
    window->setFlags(Qt::Dialog);
    window->setTransientParent(inFront);
    window->resize(leastRoom);
    window->show();
    window->requestActivate();
    return window;
}

void QuickFileChooser::choose(const FileChooserRequest& request,
                              std::function<void(const QStringList& paths)> chosen) {
    auto* window = qobject_cast<QQuickWindow*>(QGuiApplication::focusWindow());
    const bool hasRoom =
        window && window->width() >= leastRoom.width() && window->height() >= leastRoom.height();
    if (!hasRoom)
        window = openWindowFor(request, window);
    const auto file = request.files ? u"windows/FilesDialog.qml"_s : u"windows/FolderDialog.qml"_s;
    QQmlComponent component(&m_engine, m_viewsRoot.resolved(QUrl(file)));
    delete m_panel.data();
    m_chosen = std::move(chosen);
    m_panel = component.createWithInitialProperties(
        {{u"chooser"_s, QVariant::fromValue(this)},
         {u"title"_s, request.title},
         {u"acceptLabel"_s, request.prompt},
         {u"currentFolder"_s, startingFolder()},
         {u"parentWindow"_s, QVariant::fromValue(static_cast<QWindow*>(window))}});
    if (!m_panel) {
        qCWarning(libraryLog, "no file panel: %s", qUtf8Printable(component.errorString()));
        return;
    }
    m_panel->setParent(this);
    if (!hasRoom) {
        connect(window, &QWindow::visibleChanged, m_panel.data(), [this] { reject(); });
        connect(m_panel.data(), &QObject::destroyed, window, &QObject::deleteLater);
    }
    darkenPath(*window->contentItem());
}

void QuickFileChooser::accept(const QList<QUrl>& files) {
    QStringList paths;
    for (const auto& url : files)
        paths.append(url.toLocalFile());
    m_panel->deleteLater();
    if (m_chosen && !paths.isEmpty())
        m_chosen(paths);
}

void QuickFileChooser::reject() {
    if (m_panel)
        m_panel->deleteLater();
}

} // namespace halvane
