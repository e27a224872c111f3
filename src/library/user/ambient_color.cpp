// SPDX-License-Identifier: MIT
#include "library/user/ambient_color.h"

#include "platform/thread_check.h"
#include "presentation/app_theme.h"
#include "presentation/artwork_color.h"

#include <QCoreApplication>
#include <QPointer>
#include <QThreadPool>

namespace halvane {

AmbientColor::AmbientColor(QThreadPool& workers, QObject* parent)
    : QObject(parent)
    , m_workers(workers)
    , m_color(AppTheme::defaultAccent) {
}

void AmbientColor::updateAmbientColor(const std::optional<Artwork>& artworkData,
                                      const std::optional<FileUrl>& coverURL,
                                      const std::optional<Color>& fallback) {
    assertOwnThread(*this);
    const quint64 generation = ++m_generation;
    constexpr int lowPriority = -1; // behind the covers that somebody is looking at
    m_workers.start(
        [weak = QPointer(this), generation, artworkData, coverURL, fallback] {
            const Color color = ArtworkColor::ambientColor(artworkData, coverURL)
                                    .value_or(fallback.value_or(AppTheme::defaultAccent));
            // Posted to the application, which outlives us: whether we still live can only be asked
            // on the main thread.
            QMetaObject::invokeMethod(
                QCoreApplication::instance(),
                [weak, generation, color] {
                    if (weak)
                        weak->land(generation, color);
                },
                Qt::QueuedConnection);
        },
        lowPriority);
}

void AmbientColor::land(quint64 generation, const Color& color) {
    if (generation != m_generation)
        return;
    m_color = color;
    Q_EMIT ambientColorChanged();
}

} // namespace halvane
