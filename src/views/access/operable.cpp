// SPDX-License-Identifier: MIT
#include "views/access/operable.h"

#include <QMetaMethod>

#include <array>

namespace halvane::views {

namespace {

struct Action {
    QString name;
    void (Operable::*signal)();
};

const std::array<Action, 6>& knownActions() {
    static const std::array<Action, 6> actions{{
        {QAccessibleActionInterface::pressAction(), &Operable::pressAsked},
        {QAccessibleActionInterface::showMenuAction(), &Operable::menuAskedFor},
        {QStringLiteral("MoveUp"), &Operable::moveUpAsked},
        {QStringLiteral("MoveDown"), &Operable::moveDownAsked},
        {QStringLiteral("Remove"), &Operable::removeAsked},
        {QAccessibleActionInterface::setFocusAction(), &Operable::focusAsked},
    }};
    return actions;
}

} // namespace

Operable::Operable(QQuickItem* parent)
    : QQuickItem(parent) {
    // What opens and closes is told at once.
    connect(this, &Operable::isOpenChanged, this, [this] {
        QAccessible::State changed;
        changed.expanded = true;
        QAccessibleStateChangeEvent event(this, changed);
        QAccessible::updateAccessibility(&event);
    });
}

QStringList Operable::actions() const {
    QStringList offered;
    for (const auto& action : knownActions()) {
        const bool isFocus = action.signal == &Operable::focusAsked;
        if (isSignalConnected(QMetaMethod::fromSignal(action.signal)) ||
            (isFocus && activeFocusOnTab()))
            offered.append(action.name);
    }
    return offered;
}

void Operable::act(const QString& action) {
    if (!isEnabled() || !actions().contains(action))
        return;
    for (const auto& known : knownActions()) {
        if (known.name != action)
            continue;
        if (isSignalConnected(QMetaMethod::fromSignal(known.signal)))
            (this->*known.signal)();
        else
            forceActiveFocus(Qt::OtherFocusReason);
    }
}

} // namespace halvane::views
