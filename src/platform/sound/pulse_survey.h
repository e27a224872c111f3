// SPDX-License-Identifier: MIT
#pragma once

#include "platform/sound/pulse_server.h"

#include <functional>

struct pa_context;
struct pa_server_info;
struct pa_sink_info;

namespace halvane {

/// Keeps up with the sinks of a connected server. Audio thread; destroyed after its context has
/// been disconnected, so that no callback comes any more.
class PulseSurvey {
  public:
    /// `changed` is called with the first picture and whenever it is another one.
    PulseSurvey(pa_context* context, std::function<void(PulseSinks)> changed);

  private:
    void ask();
    void sinkTold(const pa_sink_info* info, int end);
    void finished();

    pa_context* m_context;
    std::function<void(PulseSinks)> m_changed;
    std::optional<PulseSinks> m_told; ///< the last picture given
    PulseSinks m_next;                ///< the picture being made
    bool m_asking = false;
    bool m_askAgain = false; ///< something happened meanwhile
};

} // namespace halvane
