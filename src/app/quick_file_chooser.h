// SPDX-License-Identifier: MIT
#pragma once

#include "platform/session/file_chooser.h"

#include <QList>
#include <QObject>
#include <QPointer>
#include <QUrl>

class QQmlEngine;
class QQuickWindow;
class QWindow;

namespace halvane {

/// A file panel of the toolkit's own, for desktops without a portal. Main thread.
class QuickFileChooser final : public QObject, public FileChooser {
    Q_OBJECT

  public:
    /// `viewsRoot` holds FilesDialog.qml, FolderDialog.qml and TargetDialog.qml. The engine must
    /// outlive this object.
    QuickFileChooser(QQmlEngine& engine, const QUrl& viewsRoot);

    void choose(const FileChooserRequest& request,
                std::function<void(const QStringList& paths)> chosen) override;
    void chooseTarget(const FileTargetRequest& request,
                      std::function<void(const QString& path)> chosen) override;

    /// What the panel says at its end.
    Q_INVOKABLE void accept(const QList<QUrl>& files);
    Q_INVOKABLE void reject();

  private:
    /// Shows the panel that a file of the views describes. `properties` are those of its own.
    void show(const QString& view, const QString& title, QVariantMap properties);
    void showIn(QQuickWindow& window, const QString& view, QVariantMap properties);
    /// A window of the panel's own, over the one in front.
    [[nodiscard]] QQuickWindow* openWindow(const QString& title, QWindow* inFront) const;

    QQmlEngine& m_engine;
    QUrl m_viewsRoot;
    std::function<void(const QStringList&)> m_chosen;
    QPointer<QObject> m_panel; ///< a child
    /// Of the panel's own. It hides once more while it ends, when it is only a plain window still.
    QPointer<QWindow> m_window;
};

} // namespace halvane
