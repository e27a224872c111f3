// SPDX-License-Identifier: MIT
#include "platform/sound/heard_clock.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace halvane {

namespace {

constexpr double unlimited = std::numeric_limits<double>::infinity();
/// Sums of fractions of a second must not miss a frame by one bit.
constexpr double slack = 1e-3;

} // namespace

void HeardClock::reset(int sampleRate) {
    m_sampleRate = sampleRate;
    publish({0, 0, 0, 0});
    m_rendered.store(0, std::memory_order_release);
    m_last.store(0, std::memory_order_release);
}

void HeardClock::addRendered(std::int64_t frames) {
    m_rendered.fetch_add(frames, std::memory_order_acq_rel);
}

void HeardClock::run(double heardFrames, double now) {
    publish({heardFrames, now, m_sampleRate, unlimited});
}

void HeardClock::endAt(std::int64_t frame) {
    Report now = report();
    now.limit = double(frame);
    publish(now);
    raiseLast(frame);
}

void HeardClock::hold(double now) {
    const auto frames = double(heard(now));
    publish({frames, now, 0, unlimited});
}

void HeardClock::runDry() {
    Report now = report();
    now.limit = double(rendered());
    publish(now);
}

void HeardClock::skipToRendered() {
    publish({double(rendered()), 0, 0, unlimited});
}

std::int64_t HeardClock::heard(double now) const {
    const Report at = report();
    const double frames = std::min(at.heard + (now - at.time) * at.rate, at.limit);
    return raiseLast(std::min(std::int64_t(std::floor(frames + slack)), rendered()));
}

double HeardClock::atEar(double now) const {
    const Report at = report();
    return at.heard + (now - at.time) * at.rate;
}

std::int64_t HeardClock::raiseLast(std::int64_t answer) const {
    auto last = m_last.load(std::memory_order_acquire);
    while (answer > last && !m_last.compare_exchange_weak(last, answer, std::memory_order_acq_rel))
        ;
    return std::max(answer, last);
}

HeardClock::Report HeardClock::report() const {
    for (;;) {
        const auto before = m_sequence.load(std::memory_order_acquire);
        const Report report{
            m_heard.load(std::memory_order_acquire), m_time.load(std::memory_order_acquire),
            m_rate.load(std::memory_order_acquire), m_limit.load(std::memory_order_acquire)};
        if (before % 2 == 0 && m_sequence.load(std::memory_order_relaxed) == before)
            return report;
    }
}

void HeardClock::publish(const Report& report) {
    m_sequence.fetch_add(1, std::memory_order_acq_rel);
    m_heard.store(report.heard, std::memory_order_release);
    m_time.store(report.time, std::memory_order_release);
    m_rate.store(report.rate, std::memory_order_release);
    m_limit.store(report.limit, std::memory_order_release);
    m_sequence.fetch_add(1, std::memory_order_acq_rel);
}

} // namespace halvane
