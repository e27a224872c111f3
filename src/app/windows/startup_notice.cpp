// SPDX-License-Identifier: MIT
#include "app/windows/startup_notice.h"

#include <QByteArray>
#include <QGuiApplication>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <xcb/xcb.h>

namespace halvane {

namespace {

constexpr qsizetype chunk = 20; // bytes in one client message

struct Freed {
    void operator()(void* memory) const { std::free(memory); }
};

xcb_atom_t atom(xcb_connection_t* display, QByteArrayView name) {
    const auto question =
        xcb_intern_atom(display, 0, static_cast<quint16>(name.size()), name.data());
    const std::unique_ptr<xcb_intern_atom_reply_t, Freed> reply(
        xcb_intern_atom_reply(display, question, nullptr));
    return reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
}

// A quoted value, as the protocol has it.
QByteArray quoted(const QString& value) {
    return '"' + value.toUtf8().replace('\\', "\\\\").replace('"', "\\\"") + '"';
}

void broadcast(xcb_connection_t* display, const QByteArray& text) {
    const auto* screen = xcb_setup_roots_iterator(xcb_get_setup(display)).data;
    if (!screen)
        return;
    const auto window = xcb_generate_id(display); // tells this message from others
    xcb_create_window(display, XCB_COPY_FROM_PARENT, window, screen->root, -1, -1, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 8;
    message.window = window;
    message.type = atom(display, "_NET_STARTUP_INFO_BEGIN");
    const auto rest = atom(display, "_NET_STARTUP_INFO");
    for (qsizetype from = 0; from < text.size(); from += chunk) {
        const auto part = QByteArrayView(text).sliced(from, std::min(chunk, text.size() - from));
        std::memset(message.data.data8, 0, chunk);
        std::memcpy(message.data.data8, part.data(), static_cast<std::size_t>(part.size()));
        xcb_send_event(display, 0, screen->root, XCB_EVENT_MASK_PROPERTY_CHANGE,
                       reinterpret_cast<const char*>(&message));
        message.type = rest;
    }
    xcb_destroy_window(display, window);
    xcb_flush(display);
}

} // namespace

void endStartupNotice(const QString& startupId) {
    const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (x11 && !startupId.isEmpty())
        broadcast(x11->connection(), "remove: ID=" + quoted(startupId) + '\0');
}

} // namespace halvane
