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

/// The colour of what plays, which a worker takes from its artwork. Only the newest request counts,
/// and it does not wait for older ones. Main thread.
class AmbientColor : public QObject {
    Q_OBJECT
    Q_PROPERTY(QColor ambientColor READ shownColor NOTIFY ambientColorChanged)

  public:
    /// The default accent until the first request is answered.
    explicit AmbientColor(QObject* parent = nullptr);

    [[nodiscard]] const Color& ambientColor() const { return m_color; }
    [[nodiscard]] QColor shownColor() const { return qtColor(m_color); }

    /// Asks for the colour of the artwork, or else of the picture at the cover URL. Without a
    /// picture it is the fallback, and without that the default accent.
    void updateAmbientColor(const std::optional<Artwork>& artworkData,
                            const std::optional<FileUrl>& coverURL,
                            const std::optional<Color>& fallback);

  Q_SIGNALS:
    /// A request has been answered.
    void ambientColorChanged();

  private:
    Color m_color;
    SerialWorker m_worker;
};

} // namespace halvane
