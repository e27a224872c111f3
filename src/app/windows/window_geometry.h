// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QObject>
#include <QRect>
#include <QSettings>
#include <QTimer>

#include <optional>

class QWindow;

namespace halvane {

/// Remembers where windows were, by identifier, in a file of the state folder: it is about this
/// desktop and not a preference. A window that is maximised or full-screen keeps the place it goes
/// back to. Main thread; a file that can't be read or written only means nothing is remembered.
class WindowGeometry : public QObject {
    Q_OBJECT

  public:
    explicit WindowGeometry(const QString& file, QObject* parent = nullptr);
    ~WindowGeometry() override;

    struct Remembered {
        QRect place;
        bool isMaximized = false;
    };
    [[nodiscard]] std::optional<Remembered> remembered(const QString& id) const;
    /// Follows a window from now on.
    void follow(QWindow* window, const QString& id);

  private:
    void note(const QWindow& window, const QString& id);
    void store();

    QSettings m_file;
    QHash<QString, Remembered> m_latest; ///< not yet in the file
    QTimer m_storeSoon;
};

} // namespace halvane
