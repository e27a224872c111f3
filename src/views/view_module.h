// SPDX-License-Identifier: MIT
#pragma once

#include "presentation/strings.h"

#include <QObject>
#include <QUrl>

class QQmlEngine;

namespace halvane {

class LibraryViewModel;

namespace views {

/// Makes the views' module usable in an engine: gives it the controller, the texts and the covers.
/// Make it before the engine loads a view; library and engine must outlive it, and the engine's
/// windows must be gone before it is. Main thread.
class ViewModule : public QObject {
    Q_OBJECT

  public:
    ViewModule(QQmlEngine& engine, LibraryViewModel& library);
    ~ViewModule() override;

    /// The folder of the windows' descriptions, for the application.
    static QUrl root();
    /// The module of an engine; null before it is made.
    static ViewModule* of(const QQmlEngine* engine);

    LibraryViewModel& library() { return m_library; }
    Strings& strings() { return m_strings; }

  private:
    QQmlEngine& m_engine;
    LibraryViewModel& m_library;
    Strings m_strings;
};

} // namespace views
} // namespace halvane
