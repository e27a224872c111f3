// SPDX-License-Identifier: MIT
// What the views see of the rest of the program, by the names they use for it.
#pragma once

#include "library/library_view_model.h"
#include "presentation/strings.h"
#include "views/view_module.h"

#include <QQmlEngine>
#include <QtQml/qqmlregistration.h>

namespace halvane::views {

struct LibrarySingleton {
    Q_GADGET
    QML_FOREIGN(halvane::LibraryViewModel)
    QML_NAMED_ELEMENT(Library)
    QML_SINGLETON

  public:
    static LibraryViewModel* create(QQmlEngine* engine, QJSEngine*) {
        LibraryViewModel* library = &ViewModule::of(engine)->library();
        QQmlEngine::setObjectOwnership(library, QQmlEngine::CppOwnership);
        return library;
    }
};

struct StringsSingleton {
    Q_GADGET
    QML_FOREIGN(halvane::Strings)
    QML_NAMED_ELEMENT(Strings)
    QML_SINGLETON

  public:
    static Strings* create(QQmlEngine* engine, QJSEngine*) {
        Strings* strings = &ViewModule::of(engine)->strings();
        QQmlEngine::setObjectOwnership(strings, QQmlEngine::CppOwnership);
        return strings;
    }
};

/// The model's enumerations, for the types of properties; views name their values as kinds.h does.
namespace ModelKinds {
Q_NAMESPACE
QML_FOREIGN_NAMESPACE(halvane)
QML_NAMED_ELEMENT(ModelKinds)
} // namespace ModelKinds

struct SpectrumModelType {
    Q_GADGET
    QML_FOREIGN(halvane::SpectrumModel)
    QML_ANONYMOUS
};

struct AlbumType {
    Q_GADGET
    QML_FOREIGN(halvane::Album)
    QML_ANONYMOUS
};

struct LiveListType {
    Q_GADGET
    QML_FOREIGN(halvane::LiveList)
    QML_VALUE_TYPE(liveList)
};

struct QueueItemType {
    Q_GADGET
    QML_FOREIGN(halvane::QueueItem)
    QML_ANONYMOUS
};

} // namespace halvane::views
