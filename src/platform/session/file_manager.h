// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QString>

#include <functional>

namespace halvane {

/// The desktop's file manager, as org.freedesktop.FileManager1. Main thread.
class FileManager : public QObject {
    Q_OBJECT

  public:
    /// Takes the name of a D-Bus connection. `openFolder` is what is done instead where no file
    /// manager answers to that name.
    FileManager(const QString& connection, std::function<void(const QString& folder)> openFolder,
                QObject* parent = nullptr);

    /// Shows the folder of a file with the file selected.
    void show(const QString& path);

  private:
    QString m_connection;
    std::function<void(const QString&)> m_openFolder;
};

} // namespace halvane
