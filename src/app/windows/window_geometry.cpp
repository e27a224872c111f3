// SPDX-License-Identifier: MIT
#include "app/windows/window_geometry.h"

#include <QWindow>

namespace halvane {

using namespace Qt::StringLiterals;

namespace {

constexpr std::chrono::milliseconds settle{500}; // a drag gives hundreds of places

} // namespace

WindowGeometry::WindowGeometry(const QString& file, QObject* parent)
    : QObject(parent)
    , m_file(file, QSettings::IniFormat) {
    m_storeSoon.setSingleShot(true);
    m_storeSoon.setInterval(settle);
    connect(&m_storeSoon, &QTimer::timeout, this, &WindowGeometry::store);
}

WindowGeometry::~WindowGeometry() {
    store();
}

std::optional<WindowGeometry::Remembered> WindowGeometry::remembered(const QString& id) const {
    const auto place = m_file.value(id + u"/place"_s).toRect();
    if (!place.isValid())
        return {};
    return Remembered{place, m_file.value(id + u"/maximized"_s).toBool()};
}

void WindowGeometry::follow(QWindow* window, const QString& id) {
    const auto changed = [this, window, id] { note(*window, id); };
    connect(window, &QWindow::xChanged, this, changed);
    connect(window, &QWindow::yChanged, this, changed);
    connect(window, &QWindow::widthChanged, this, changed);
    connect(window, &QWindow::heightChanged, this, changed);
    connect(window, &QWindow::windowStateChanged, this, changed);
}

void WindowGeometry::note(const QWindow& window, const QString& id) {
    if (!window.isVisible())
        return;
    auto latest = m_latest.value(id, remembered(id).value_or(Remembered{window.geometry()}));
    latest.isMaximized = window.windowState() == Qt::WindowMaximized;
    if (window.windowState() == Qt::WindowNoState)
        latest.place = window.geometry();
    m_latest.insert(id, latest);
    m_storeSoon.start();
}

void WindowGeometry::store() {
    for (auto it = m_latest.cbegin(); it != m_latest.cend(); ++it) {
        m_file.setValue(it.key() + u"/place"_s, it->place);
        m_file.setValue(it.key() + u"/maximized"_s, it->isMaximized);
    }
    m_latest.clear();
    m_file.sync();
}

} // namespace halvane
