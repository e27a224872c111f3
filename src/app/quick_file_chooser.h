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
    /// `viewsRoot` holds FilesDialog.qml and FolderDialog.qml. The engine must outlive this object.
    QuickFileChooser(QQmlEngine& engine, const QUrl& viewsRoot);

    void choose(const FileChooserRequest& request,
                std::function<void(const QStringList& paths)> chosen) override;

    /// What the panel says at its end.
    Q_INVOKABLE void accept(const QList<QUrl>& files);
    Q_INVOKABLE void reject();

  private:
    /// A window of the panel's own, over the one in front.
    [[nodiscard]] QQuickWindow* openWindowFor(const FileChooserRequest& request,
                                              QWindow* inFront) const;

    QQmlEngine& m_engine;
    QUrl m_viewsRoot;
    std::function<void(const QStringList&)> m_chosen;
    QPointer<QObject> m_panel; ///< a child
};

} // namespace halvane
