// SPDX-License-Identifier: MIT
#include "app/quick_file_chooser.h"

#include "platform/log.h"

#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QStandardPaths>

#include <functional>

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

QQuickItem* firstWithin(QQuickItem& item, const std::function<bool(const QQuickItem&)>& isIt) {
    if (isIt(item))
        return &item;
    const auto children = item.childItems();
    for (auto* child : children)
        if (auto* found = firstWithin(*child, isIt))
            return found;
    return nullptr;
}

// A file's name can be typed at once, and Enter takes it. The panel itself leaves the keys nowhere.
void offerName(QQuickItem& within, const QString& acceptLabel) {
    auto* name = firstWithin(within, [](const QQuickItem& item) {
        return item.isVisible() && item.objectName() == u"fileNameTextField"_s;
    });
    auto* accept = firstWithin(within, [&](const QQuickItem& item) {
        return item.inherits("QQuickAbstractButton") && item.property("text") == acceptLabel;
    });
    if (!name || !accept)
        return;
    name->forceActiveFocus();
    QMetaObject::invokeMethod(name, "selectAll");
    QObject::connect(name, SIGNAL(accepted()), accept, SIGNAL(clicked()));
}

// A name that was typed comes as an address without a scheme, and a whole path that was typed
// stands behind the folder and two slashes.
QString pathOf(const QUrl& url) {
    const QString path =
        url.isLocalFile() ? url.toLocalFile() : QUrl::fromPercentEncoding(url.toEncoded());
    const qsizetype typed = path.lastIndexOf(u"//"_s);
    return typed < 0 ? path : path.sliced(typed + 1);
}

} // namespace

QuickFileChooser::QuickFileChooser(QQmlEngine& engine, const QUrl& viewsRoot)
    : m_engine(engine)
    , m_viewsRoot(viewsRoot) {
}

QQuickWindow* QuickFileChooser::openWindow(const QString& title, QWindow* inFront) const {
    QQmlComponent component(&m_engine, m_viewsRoot.resolved(QUrl(u"windows/FilePanelHost.qml"_s)));
    auto* window = qobject_cast<QQuickWindow*>(component.create());
    Q_ASSERT(window);
    window->setTitle(title);
    window->setFlags(Qt::Dialog);
    window->setTransientParent(inFront);
    window->resize(leastRoom);
    window->show();
    window->requestActivate();
    return window;
}

void QuickFileChooser::choose(const FileChooserRequest& request,
                              std::function<void(const QStringList& paths)> chosen) {
    m_chosen = std::move(chosen);
    show(request.files ? u"FilesDialog.qml"_s : u"FolderDialog.qml"_s, request.title,
         {{u"acceptLabel"_s, request.prompt}, {u"currentFolder"_s, startingFolder()}});
}

void QuickFileChooser::chooseTarget(const FileTargetRequest& request,
                                    std::function<void(const QString& path)> chosen) {
    const QString suffix = QFileInfo(request.fileName).suffix();
    m_chosen = [chosen = std::move(chosen), suffix](const QStringList& paths) {
        const QString& path = paths.front();
        chosen(QFileInfo(path).suffix().isEmpty() ? path + u'.' + suffix : path);
    };
    const QUrl folder = startingFolder();
    show(u"TargetDialog.qml"_s, request.title,
         {{u"acceptLabel"_s, request.prompt},
          {u"currentFolder"_s, folder},
          {u"suggestion"_s, QUrl::fromLocalFile(folder.toLocalFile() + u'/' + request.fileName)}});
}

void QuickFileChooser::show(const QString& view, const QString& title, QVariantMap properties) {
    delete m_panel.data();
    delete m_window.data();
    properties.insert(u"title"_s, title);
    auto* window = qobject_cast<QQuickWindow*>(QGuiApplication::focusWindow());
    const bool hasRoom =
        window && window->width() >= leastRoom.width() && window->height() >= leastRoom.height();
    if (hasRoom)
        return showIn(*window, view, properties);
    auto* own = openWindow(title, window);
    m_window = own;
    // Until its first frame a window has no size to centre the panel in.
    connect(
        own, &QQuickWindow::afterAnimating, this,
        [this, view, properties] {
            auto* shown = qobject_cast<QQuickWindow*>(m_window.data());
            if (!shown)
                return;
            showIn(*shown, view, properties);
            connect(shown, &QWindow::visibleChanged, this, &QuickFileChooser::reject);
        },
        static_cast<Qt::ConnectionType>(Qt::QueuedConnection | Qt::SingleShotConnection));
}

void QuickFileChooser::showIn(QQuickWindow& window, const QString& view, QVariantMap properties) {
    QQmlComponent component(&m_engine, m_viewsRoot.resolved(QUrl(u"windows/"_s + view)));
    properties.insert(
        QVariantMap{{u"chooser"_s, QVariant::fromValue(this)},
                    {u"parentWindow"_s, QVariant::fromValue(static_cast<QWindow*>(&window))}});
    m_panel = component.createWithInitialProperties(properties);
    if (!m_panel) {
        qCWarning(libraryLog, "no file panel: %s", qUtf8Printable(component.errorString()));
        return reject();
    }
    m_panel->setParent(this);
    // From Qt 6.8 on the panel has a window of its own within ours.
    for (QWindow* each : QGuiApplication::allWindows())
        if (const auto* shown = qobject_cast<QQuickWindow*>(each)) {
            darkenPath(*shown->contentItem());
            offerName(*shown->contentItem(), properties.value(u"acceptLabel"_s).toString());
        }
}

void QuickFileChooser::accept(const QList<QUrl>& files) {
    QStringList paths;
    for (const auto& url : files)
        if (const QString path = pathOf(url); !path.isEmpty())
            paths.append(path);
    reject();
    if (m_chosen && !paths.isEmpty())
        m_chosen(paths);
}

void QuickFileChooser::reject() {
    if (m_panel)
        m_panel->deleteLater();
    if (m_window)
        m_window->deleteLater();
}

} // namespace halvane
