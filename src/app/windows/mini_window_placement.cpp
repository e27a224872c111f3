// SPDX-License-Identifier: MIT
#include "app/windows/mini_window_placement.h"

#include "app/windows/window_placement.h"
#include "app/windows/window_registry.h"

#include <QGuiApplication>
#include <QQuickWindow>
#include <QScreen>

namespace halvane {

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

namespace {

constexpr int looks = 20;
constexpr auto betweenLooks = 30ms;

} // namespace

MiniWindowPlacement::MiniWindowPlacement(WindowRegistry& windows, Clock& clock)
    : m_windows(windows)
    , m_clock(clock) {
}

void MiniWindowPlacement::centerOnMainWindow() {
    if (!WindowRegistry::canPlaceWindows())
        return;
    const QWindow* mainWindow = m_windows.visibleWindow(u"main"_s);
    if (!mainWindow)
        mainWindow = QGuiApplication::focusWindow();
    if (!mainWindow)
        return;
    const auto frame = mainWindow->frameGeometry();
    m_nextLook = m_clock.after(0ms, [this, frame] { look(frame, looks); });
}

void MiniWindowPlacement::look(const QRect& mainFrame, int looksLeft) {
    auto* mini = m_windows.visibleWindow(u"mini"_s);
    if (!mini) {
        if (looksLeft > 1)
            m_nextLook = m_clock.after(
                betweenLooks, [this, mainFrame, looksLeft] { look(mainFrame, looksLeft - 1); });
        return;
    }
    const auto* screen = mini->screen() ? mini->screen() : QGuiApplication::primaryScreen();
    const auto area = screen ? std::optional(screen->availableGeometry()) : std::nullopt;
    mini->setFramePosition(centredOn(mainFrame, mini->frameGeometry().size(), area));
}

} // namespace halvane
