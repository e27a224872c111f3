// SPDX-License-Identifier: MIT
#pragma once

#include <QQuickAsyncImageProvider>
#include <QThreadPool>

#include <atomic>
#include <functional>

namespace halvane::views {

/// Which cover a view asked for: the last part of its "image://cover/..." address.
struct CoverRequest {
    QString key;       ///< names the picture
    double radius = 0; ///< of its corners, as a share of its width
};

/// Reads a request from "percent-encoded key?radius".
CoverRequest parseCoverRequest(const QString& id);

/// The picture scaled to fill the size, cut at its centre, with rounded corners; null for a null
/// picture or an empty size. Any thread.
QImage coverWithCorners(const QImage& picture, const QSize& size, double radius);

/// Gives QML the covers: decoded by a few workers at the size they are shown, and rounded there, so
/// that the scene graph has only plain textures to draw. A cover nobody waits for any more is not
/// decoded.
class CoverImageProvider : public QQuickAsyncImageProvider {
  public:
    /// Gives a picture by its key, at least as large as the size where it can be; null when there
    /// is none or it cannot be read. Called on the workers, several at once.
    using Source = std::function<QImage(const QString& key, const QSize& size)>;

    explicit CoverImageProvider(Source source);
    ~CoverImageProvider() override;

    /// Waits until the source is in use no more; from then on there are no covers. The engine's
    /// reader may hold a provider longer than the engine itself.
    void close();

    QQuickImageResponse* requestImageResponse(const QString& id,
                                              const QSize& requestedSize) override;

  private:
    Source m_source;
    std::atomic_bool m_isClosed = false;
    /// Several at once and in any order, as tiles come into view: a SerialWorker would show them
    /// one by one.
    QThreadPool m_workers;
};

} // namespace halvane::views
