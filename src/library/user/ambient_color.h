// SPDX-License-Identifier: MIT
#pragma once

#include "model/artwork.h"
#include "model/color.h"
#include "model/file_url.h"
#include "platform/serial_worker.h"
#include "presentation/qt_colors.h"

#include <QObject>

#include <optional>

namespace halvane {

/// The colour of what is playing, taken from its artwork on a worker. Of several requests only the
/// latest lands, and it waits for none before it. Main thread.
class AmbientColor : public QObject {
    Q_OBJECT
    Q_PROPERTY(QColor ambientColor READ shownColor NOTIFY ambientColorChanged)

  public:
    /// The default accent until the first request lands.
    explicit AmbientColor(QObject* parent = nullptr);

    const Color& ambientColor() const { return m_color; }
    QColor shownColor() const { return qtColor(m_color); }

    /// Asks for the colour of some artwork, or of the picture at the cover URL; where there is no
    /// picture, the fallback is taken, and without one the default accent.
    void updateAmbientColor(const std::optional<Artwork>& artworkData,
                            const std::optional<FileUrl>& coverURL,
                            const std::optional<Color>& fallback);

  Q_SIGNALS:
    /// A request has landed.
    void ambientColorChanged();

  private:
    Color m_color;
    SerialWorker m_worker;
};

} // namespace halvane
