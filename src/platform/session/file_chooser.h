// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

#include <functional>

namespace halvane {

struct FileChooserRequest {
    QString title;
    QString prompt; ///< the accepting button's text
    QString message;
    bool files = false;
    bool directories = false;
};

/// A file to be written.
struct FileTargetRequest {
    QString title;
    QString prompt;   ///< the accepting button's text
    QString fileName; ///< as a first suggestion
};

/// The desktop's own panel for choosing files or folders. Main thread.
class FileChooser {
  public:
    virtual ~FileChooser() = default;
    /// Shows the panel without blocking; several things may be chosen. `chosen` gets their absolute
    /// paths and is not called when the panel is cancelled.
    virtual void choose(const FileChooserRequest& request,
                        std::function<void(const QStringList& paths)> chosen) = 0;
    /// Shows the panel for a file to write. Replacing a file that is there is the panel's question.
    /// `chosen` gets the absolute path and is not called when the panel is cancelled.
    virtual void chooseTarget(const FileTargetRequest& request,
                              std::function<void(const QString& path)> chosen) = 0;
};

} // namespace halvane
