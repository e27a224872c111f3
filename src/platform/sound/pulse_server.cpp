// SPDX-License-Identifier: MIT
#include "platform/sound/pulse_server.h"

#include "platform/log.h"
#include "platform/sound/pulse_survey.h"
#include "platform/sound/thread_priority.h"

#include <pulse/context.h>
#include <pulse/error.h>
#include <pulse/mainloop-api.h>
#include <pulse/proplist.h>
#include <pulse/subscribe.h>
#include <pulse/thread-mainloop.h>

#include <algorithm>

namespace halvane {

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

namespace {

// An attempt costs a failed connect() on a local socket. The longest pause keeps the promise that
// the sound is back within a second of the server.
constexpr auto firstPause = 100ms;
constexpr auto longestPause = 750ms;

pa_context* newContext(pa_mainloop_api* api) {
    pa_proplist* properties = pa_proplist_new();
    pa_proplist_sets(properties, PA_PROP_APPLICATION_NAME, "Halvane");
    pa_proplist_sets(properties, PA_PROP_APPLICATION_ID, "org.halvane.Halvane");
    pa_proplist_sets(properties, PA_PROP_APPLICATION_ICON_NAME, "org.halvane.Halvane");
    pa_context* context = pa_context_new_with_proplist(api, "Halvane", properties);
    pa_proplist_free(properties);
    return context;
}

} // namespace

PulseServer::Lock::Lock(const PulseServer& server)
    : m_loop(server.m_loop) {
    if (m_loop)
        pa_threaded_mainloop_lock(m_loop);
}

PulseServer::Lock::~Lock() {
    if (m_loop)
        pa_threaded_mainloop_unlock(m_loop);
}

PulseServer::PulseServer(Clock& clock, const QString& address, QObject* parent)
    : QObject(parent)
    , m_clock(clock)
    , m_address(address.toUtf8())
    , m_loop(pa_threaded_mainloop_new())
    , m_pause(firstPause) {
    if (m_loop)
        pa_threaded_mainloop_set_name(m_loop, "halvane-audio");
    if (!m_loop || pa_threaded_mainloop_start(m_loop) < 0) {
        // Out of threads or descriptors: as if there were no server.
        qCWarning(libraryLog, "the sound server's library can't run");
        if (m_loop)
            pa_threaded_mainloop_free(m_loop);
        m_loop = nullptr;
        return;
    }
    attempt();
}

PulseServer::~PulseServer() {
    if (!m_loop)
        return;
    dropContext();
    pa_threaded_mainloop_stop(m_loop);
    pa_threaded_mainloop_free(m_loop);
}

const PulseSink* PulseServer::sink(std::uint32_t index) const {
    const auto at = std::ranges::find(m_sinks.sinks, index, &PulseSink::index);
    return at == m_sinks.sinks.end() ? nullptr : &*at;
}

const PulseSink* PulseServer::sink(const QString& name) const {
    const auto at = std::ranges::find(m_sinks.sinks, name, &PulseSink::name);
    return at == m_sinks.sinks.end() ? nullptr : &*at;
}

void PulseServer::waitForFirstAttempt(std::chrono::milliseconds longest) {
    if (!m_loop)
        return;
    {
        std::unique_lock lock(m_newsMutex);
        m_newsCame.wait_for(lock, longest, [this] { return m_news.has_value(); });
    }
    deliver();
}

/// Connecting may start a server and wait for it, so it is left to the audio thread, which has
/// nothing to play at that time.
void PulseServer::attempt() {
    const Lock lock(*this);
    pa_mainloop_api_once(
        pa_threaded_mainloop_get_api(m_loop),
        [](pa_mainloop_api*, void* self) { static_cast<PulseServer*>(self)->connectContext(); },
        this);
}

void PulseServer::connectContext() {
    if (!std::exchange(m_isPreferred, true))
        preferThisThread();
    m_context = newContext(pa_threaded_mainloop_get_api(m_loop));
    if (!m_context)
        return tell({true, u"out of memory"_s, {}});
    pa_context_set_state_callback(
        m_context,
        [](pa_context* context, void* self) {
            static_cast<PulseServer*>(self)->contextStateChanged(context);
        },
        this);
    const auto flags =
        std::exchange(m_mayStartServer, false) ? PA_CONTEXT_NOFLAGS : PA_CONTEXT_NOAUTOSPAWN;
    // A failure arrives through the callback, too.
    (void)pa_context_connect(m_context, m_address.isEmpty() ? nullptr : m_address.constData(),
                             flags, nullptr);
}

void PulseServer::contextStateChanged(pa_context* context) {
    switch (pa_context_get_state(context)) {
    case PA_CONTEXT_READY:
        m_survey = std::make_unique<PulseSurvey>(context, [this](PulseSinks sinks) {
            tell({false, {}, std::move(sinks)});
        });
        break;
    case PA_CONTEXT_FAILED:
    case PA_CONTEXT_TERMINATED:
        tell({true, QString::fromUtf8(pa_strerror(pa_context_errno(context))), {}});
        break;
    default:
        break;
    }
}

void PulseServer::tell(News news) {
    const std::lock_guard lock(m_newsMutex);
    m_news = std::move(news);
    m_newsCame.notify_all();
    if (!std::exchange(m_deliveryPosted, true))
        QMetaObject::invokeMethod(this, &PulseServer::deliver, Qt::QueuedConnection);
}

void PulseServer::dropContext() {
    const Lock lock(*this);
    if (m_context) {
        pa_context_set_state_callback(m_context, nullptr, nullptr);
        pa_context_set_subscribe_callback(m_context, nullptr, nullptr);
        pa_context_disconnect(m_context);
        pa_context_unref(m_context);
        m_context = nullptr;
    }
    m_survey.reset();
}

void PulseServer::deliver() {
    std::optional<News> news;
    {
        const std::lock_guard lock(m_newsMutex);
        news = std::exchange(m_news, std::nullopt);
        m_deliveryPosted = false;
    }
    if (!news)
        return;
    if (news->lost)
        becomeLost(news->reason);
    else if (news->sinks)
        becomeReady(std::move(*news->sinks));
}

void PulseServer::becomeLost(const QString& reason) {
    dropContext();
    m_retry = m_clock.after(m_pause, [this] {
        m_retry.reset();
        attempt();
    });
    m_pause = std::min<std::chrono::milliseconds>(m_pause * 2, longestPause);
    m_sinks = {};
    if (!std::exchange(m_ready, false))
        return;
    qCWarning(libraryLog, "the sound server went away: %ls", qUtf16Printable(reason));
    Q_EMIT readyChanged();
    Q_EMIT sinksChanged();
}

void PulseServer::becomeReady(PulseSinks sinks) {
    m_pause = firstPause;
    m_sinks = std::move(sinks);
    const bool appeared = !std::exchange(m_ready, true);
    Q_EMIT sinksChanged();
    if (appeared)
        Q_EMIT readyChanged();
}

} // namespace halvane
