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

/// The desktop's own panel for choosing files or folders. Main thread.
class FileChooser {
  public:
    virtual ~FileChooser() = default;
    /// Shows the panel without blocking; several things may be chosen. `chosen` gets their absolute
    /// paths and is not called when the panel is cancelled.
    virtual void choose(const FileChooserRequest& request,
                        std::function<void(const QStringList& paths)> chosen) = 0;
};

} // namespace halvane
