// SPDX-License-Identifier: MIT
#pragma once

#include "presentation/symbols.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace halvane::views {

/// The symbol table for QML. Main thread.
class Symbol : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(QString family READ family CONSTANT)

  public:
    using QObject::QObject;

    [[nodiscard]] QString family() const { return symbolFontFamily(); }
    Q_INVOKABLE [[nodiscard]] QString glyph(const QString& name) const { return symbolGlyph(name); }
};

} // namespace halvane::views
