// SPDX-License-Identifier: MIT
#include "metadata/parallel/reading_effort.h"

#include <pthread.h>

namespace halvane {

ReadingEffort::Scope::Scope(ReadingEffort& effort, std::size_t input)
    : m_effort(effort)
    , m_input(input) {
    Worker worker{};
    if (::pthread_getcpuclockid(::pthread_self(), &worker.clock) != 0)
        return;
    worker.start = processorTime(worker.clock);
    const std::scoped_lock lock(m_effort.m_mutex);
    m_effort.m_workers.emplace(input, worker);
}

ReadingEffort::Scope::~Scope() {
    const std::scoped_lock lock(m_effort.m_mutex);
    m_effort.m_workers.erase(m_input);
}

std::chrono::nanoseconds ReadingEffort::spentOn(std::size_t input) const {
    const std::scoped_lock lock(m_mutex);
    const auto worker = m_workers.find(input);
    if (worker == m_workers.end())
        return {};
    return processorTime(worker->second.clock) - worker->second.start;
}

} // namespace halvane
