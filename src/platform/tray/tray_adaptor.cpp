// SPDX-License-Identifier: MIT
#include "platform/tray/tray_adaptor.h"

#include <QDBusMetaType>

namespace halvane {

using namespace Qt::StringLiterals;

namespace {

constexpr int wheelStep = 120; // eighths of a degree

} // namespace

QDBusArgument& operator<<(QDBusArgument& out, const TrayImage& image) {
    out.beginStructure();
    out << image.width << image.height << image.argb;
    out.endStructure();
    return out;
}

const QDBusArgument& operator>>(const QDBusArgument& in, TrayImage& image) {
    in.beginStructure();
    in >> image.width >> image.height >> image.argb;
    in.endStructure();
    return in;
}

QDBusArgument& operator<<(QDBusArgument& out, const TrayToolTip& tip) {
    out.beginStructure();
    out << tip.icon << tip.images << tip.title << tip.text;
    out.endStructure();
    return out;
}

const QDBusArgument& operator>>(const QDBusArgument& in, TrayToolTip& tip) {
    in.beginStructure();
    in >> tip.icon >> tip.images >> tip.title >> tip.text;
    in.endStructure();
    return in;
}

TrayAdaptor::TrayAdaptor(QObject* object, const QString& title, const QString& menuPath)
    : QDBusAbstractAdaptor(object)
    , m_title(title)
    , m_menuPath(menuPath) {
    qDBusRegisterMetaType<TrayImage>();
    qDBusRegisterMetaType<TrayImageList>();
    qDBusRegisterMetaType<TrayToolTip>();
}

QString TrayAdaptor::category() const {
    return u"ApplicationStatus"_s;
}

QString TrayAdaptor::id() const {
    return u"org.halvane.Halvane"_s;
}

QString TrayAdaptor::status() const {
    return u"Active"_s;
}

void TrayAdaptor::setIcon(const QString& name, const QList<TrayPixmap>& pixmaps) {
    m_iconName = name;
    m_images.clear();
    for (const auto& pixmap : pixmaps)
        m_images.append({pixmap.size.width(), pixmap.size.height(), pixmap.argb});
    Q_EMIT NewIcon();
}

// The field is markup.
void TrayAdaptor::setToolTip(const QString& text) {
    const QString escaped = text.toHtmlEscaped();
    if (m_toolTip == escaped)
        return;
    m_toolTip = escaped;
    Q_EMIT NewToolTip();
}

void TrayAdaptor::Activate(int x, int y) {
    onClick({x, y});
}

void TrayAdaptor::SecondaryActivate(int x, int y) {
    onClick({x, y});
}

// The desktop shows the menu itself.
void TrayAdaptor::ContextMenu(int, int) {
}

// A wheel turns in steps of 120, a touchpad in many small ones; some desktops send -1 and 1.
void TrayAdaptor::Scroll(int delta, const QString& orientation) {
    if (orientation.compare("horizontal"_L1, Qt::CaseInsensitive) == 0)
        return;
    m_scrolled += std::abs(delta) == 1 ? delta * wheelStep : delta;
    const int steps = m_scrolled / wheelStep;
    m_scrolled %= wheelStep;
    if (steps != 0)
        onScroll(steps);
}

void TrayAdaptor::ProvideXdgActivationToken(const QString& token) {
    onActivationToken(token);
}

} // namespace halvane
