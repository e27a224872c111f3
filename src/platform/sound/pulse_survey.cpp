// SPDX-License-Identifier: MIT
#include "platform/sound/pulse_survey.h"

#include <pulse/context.h>
#include <pulse/introspect.h>
#include <pulse/operation.h>
#include <pulse/proplist.h>
#include <pulse/subscribe.h>

#include <string_view>

namespace halvane {

namespace {

/// Gives up an operation's handle; its callback comes all the same.
void release(pa_operation* operation) {
    if (operation)
        pa_operation_unref(operation);
}

// The server does not say which devices rewrite their buffer. Those are ALSA's, and those whose
// latency follows what is asked for.
bool keepsWhatItHas(const pa_sink_info& info) {
    const char* api = pa_proplist_gets(info.proplist, PA_PROP_DEVICE_API);
    const bool isAlsa = api && std::string_view(api) == "alsa";
    return !isAlsa && !(info.flags & PA_SINK_DYNAMIC_LATENCY);
}

} // namespace

PulseSurvey::PulseSurvey(pa_context* context, std::function<void(PulseSinks)> changed)
    : m_context(context)
    , m_changed(std::move(changed)) {
    pa_context_set_subscribe_callback(
        context,
        [](pa_context*, pa_subscription_event_type_t, std::uint32_t, void* self) {
            static_cast<PulseSurvey*>(self)->ask();
        },
        this);
    const auto what =
        pa_subscription_mask_t(PA_SUBSCRIPTION_MASK_SINK | PA_SUBSCRIPTION_MASK_SERVER);
    release(pa_context_subscribe(context, what, nullptr, nullptr));
    ask();
}

/// Asks for everything: devices come and go too seldom to keep books on single ones. Events that
/// arrive in a bunch make one more question.
void PulseSurvey::ask() {
    m_askAgain = m_asking;
    if (m_asking)
        return;
    m_asking = true;
    m_next = {};
    release(pa_context_get_server_info(
        m_context,
        [](pa_context*, const pa_server_info* info, void* self) {
            if (!info)
                return;
            PulseSinks& next = static_cast<PulseSurvey*>(self)->m_next;
            next.defaultSink = QString::fromUtf8(info->default_sink_name);
            next.takesBlocks = QByteArrayView(info->server_name).contains("PipeWire");
        },
        this));
    // The answers come in the order of the questions.
    release(pa_context_get_sink_info_list(
        m_context,
        [](pa_context*, const pa_sink_info* info, int end, void* self) {
            static_cast<PulseSurvey*>(self)->sinkTold(info, end);
        },
        this));
}

void PulseSurvey::sinkTold(const pa_sink_info* info, int end) {
    if (end != 0)
        return finished();
    const auto text = [](const char* utf8) { return QString::fromUtf8(utf8 ? utf8 : ""); };
    m_next.sinks.push_back({info->index, text(info->name), text(info->description),
                            int(info->sample_spec.rate), keepsWhatItHas(*info)});
}

void PulseSurvey::finished() {
    m_asking = false;
    if (m_askAgain)
        return ask();
    if (m_told == m_next)
        return;
    m_told = m_next;
    m_changed(m_next);
}

} // namespace halvane
