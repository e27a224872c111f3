// SPDX-License-Identifier: MIT
#include "app/quick_file_chooser.h"

#include "platform/log.h"

#include <QDir>
#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QStandardPaths>
#include <QWindow>

namespace halvane {

using namespace Qt::StringLiterals;

namespace {

/// Where people keep their music, or where they are at home.
QUrl startingFolder() {
    const auto music = QStandardPaths::writableLocation(QStandardPaths::MusicLocation);
    return QUrl::fromLocalFile(QDir(music).exists() ? music : QDir::homePath());
}

} // namespace

QuickFileChooser::QuickFileChooser(QQmlEngine& engine, const QUrl& viewsRoot)
    : m_engine(engine)
    , m_viewsRoot(viewsRoot) {
}

void QuickFileChooser::choose(const FileChooserRequest& request,
                              std::function<void(const QStringList& paths)> chosen) {
    const auto file = request.files ? u"FilesDialog.qml"_s : u"FolderDialog.qml"_s;
    QQmlComponent component(&m_engine, m_viewsRoot.resolved(QUrl(file)));
    auto* dialog = component.createWithInitialProperties(
        {{u"title"_s, request.title},
         {u"acceptLabel"_s, request.prompt},
         {u"currentFolder"_s, startingFolder()},
         {u"parentWindow"_s, QVariant::fromValue(QGuiApplication::focusWindow())}});
    if (!dialog) {
        qCWarning(libraryLog, "no file panel: %s", qUtf8Printable(component.errorString()));
        return;
    }
    m_chosen = std::move(chosen);
    dialog->setParent(this);
    connect(dialog, SIGNAL(accepted()), this, SLOT(accepted()));
    connect(dialog, SIGNAL(rejected()), this, SLOT(rejected()));
    QMetaObject::invokeMethod(dialog, "open");
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
