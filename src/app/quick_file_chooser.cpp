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

/// Where people keep their music, or where they are at home.
QUrl startingFolder() {
    const auto music = QStandardPaths::writableLocation(QStandardPaths::MusicLocation);
    return QUrl::fromLocalFile(QDir(music).exists() ? music : QDir::homePath());
}

/// The panel is drawn inside a window: with less than this it could not be used.
constexpr QSize leastRoom(640, 440);

/// The ground of the panel's path is white in its style, whatever the window's colours.
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
    auto* dialog = component.createWithInitialProperties(
        {{u"title"_s, request.title},
         {u"acceptLabel"_s, request.prompt},
         {u"currentFolder"_s, startingFolder()},
         {u"parentWindow"_s, QVariant::fromValue(static_cast<QWindow*>(window))}});
    if (!dialog) {
        qCWarning(libraryLog, "no file panel: %s", qUtf8Printable(component.errorString()));
        return;
    }
    m_chosen = std::move(chosen);
    dialog->setParent(this);
    connect(dialog, SIGNAL(accepted()), this, SLOT(accepted()));
    connect(dialog, SIGNAL(rejected()), this, SLOT(rejected()));
    if (!hasRoom) {
        connect(window, &QWindow::visibleChanged, dialog,
                [dialog] { QMetaObject::invokeMethod(dialog, "reject"); });
        connect(dialog, &QObject::destroyed, window, &QObject::deleteLater);
    }
    QMetaObject::invokeMethod(dialog, "open");
    darkenPath(*window->contentItem());
}

void QuickFileChooser::accepted() {
    QStringList paths;
    for (const auto& url : sender()->property("chosen").value<QList<QUrl>>())
        paths.append(url.toLocalFile());
    sender()->deleteLater();
    if (m_chosen && !paths.isEmpty())
        m_chosen(paths);
}

void QuickFileChooser::rejected() {
    sender()->deleteLater();
}

} // namespace halvane
