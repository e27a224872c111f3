// SPDX-License-Identifier: MIT
#pragma once

#include "views/library/covers/cover_workers.h"

#include <QImage>
#include <QQuickAsyncImageProvider>

#include <memory>
#include <mutex>
#include <vector>

namespace halvane::views {

/// Which cover a view asked for: the last part of its "image://cover/..." address.
struct CoverRequest {
    QString key;       ///< names the picture
    double radius = 0; ///< of its corners, as a share of its width
    int revision = 0;  ///< grows when another picture is behind the key
};

/// Reads a request from "percent-encoded key?radius&revision".
CoverRequest parseCoverRequest(const QString& id);

/// The picture scaled to fill the size, cut at its centre, with rounded corners; null for a null
/// picture or an empty size. Any thread.
QImage coverWithCorners(const QImage& picture, const QSize& size, double radius);

/// Where pictures come from. Any thread, several at once.
class CoverSource {
  public:
    virtual ~CoverSource() = default;
    /// A decoded picture that is at hand; false when there is none.
    virtual bool find(const CoverRequest& request, const QSize& size, QImage& found) = 0;
    /// Names the disk on which a picture lies. Does not look at the disk.
    virtual QByteArray diskOf(const QString& key) = 0;
    /// The bytes of a picture; empty when they can't be read. May hang with its disk.
    virtual QByteArray read(const QString& key) = 0;
    /// Decodes bytes to a picture at least as large as the size where it can be; null when they are
    /// no picture.
    virtual QImage decode(const CoverRequest& request, const QByteArray& bytes,
                          const QSize& size) = 0;
    /// A picture that was wanted has not been read, because its disk does not answer.
    virtual void leftUnread(const QString& key) = 0;
};

/// Gives QML the covers: decoded by a few workers at the size they are shown, and rounded there, so
/// that the scene graph has only plain textures to draw. A cover nobody waits for any more is not
/// decoded. One that can't be shown is an error, with its key for the log.
class CoverImageProvider : public QQuickAsyncImageProvider {
  public:
    explicit CoverImageProvider(std::shared_ptr<CoverSource> source);
    ~CoverImageProvider() override;

    /// Answers all who wait; from then on there are no covers. A read that hangs is left behind
    /// with the source. The engine's reader may hold a provider longer than the engine itself.
    void close();

    QQuickImageResponse* requestImageResponse(const QString& id,
                                              const QSize& requestedSize) override;

  private:
    struct Question;

    const std::shared_ptr<CoverSource> m_source;
    std::mutex m_mutex; ///< guards the questions
    std::vector<std::weak_ptr<Question>> m_questions;
    CoverWorkers m_workers;
};

} // namespace halvane::views
