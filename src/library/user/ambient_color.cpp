// SPDX-License-Identifier: MIT
#include "library/user/ambient_color.h"

#include "platform/thread_check.h"
#include "presentation/app_theme.h"
#include "presentation/artwork_color.h"

namespace halvane {

AmbientColor::AmbientColor(QObject* parent)
    : QObject(parent)
    , m_color(AppTheme::defaultAccent) {
}

void AmbientColor::updateAmbientColor(const std::optional<Artwork>& artworkData,
                                      const std::optional<FileUrl>& coverURL,
                                      const std::optional<Color>& fallback) {
    assertOwnThread(*this);
    m_worker.leaveBehind(); // the picture before this one may lie on a disk that hangs
    m_worker.run(
        [artworkData, coverURL, fallback] {
            return ArtworkColor::ambientColor(artworkData, coverURL)
                .value_or(fallback.value_or(AppTheme::defaultAccent));
        },
        [this](const Color& color) {
            m_color = color;
            Q_EMIT ambientColorChanged();
        });
}

} // namespace halvane
