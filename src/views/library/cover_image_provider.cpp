// SPDX-License-Identifier: MIT
#include "views/library/cover_image_provider.h"

#include <QPainter>
#include <QPainterPath>
#include <QUrl>

#include <memory>

namespace halvane::views {

namespace {

constexpr int workerCount = 2;

// What the engine waits for. The job and the engine each hold it; the last one frees it.
class CoverResponse : public QQuickImageResponse {
  public:
    explicit CoverResponse(std::shared_ptr<std::atomic_bool> cancelled)
        : m_cancelled(std::move(cancelled)) {}

    void deliver(QImage image) {
        m_image = std::move(image);
        Q_EMIT finished();
    }
    [[nodiscard]] QQuickTextureFactory* textureFactory() const override {
        return QQuickTextureFactory::textureFactoryForImage(m_image);
    }
    void cancel() override { m_cancelled->store(true, std::memory_order_relaxed); }

  private:
    std::shared_ptr<std::atomic_bool> m_cancelled;
    QImage m_image;
};

} // namespace

CoverRequest parseCoverRequest(const QString& id) {
    const auto mark = id.lastIndexOf(u'?');
    CoverRequest request;
    request.key = QUrl::fromPercentEncoding(id.left(mark).toUtf8());
    if (mark >= 0)
        request.radius = id.mid(mark + 1).toDouble();
    return request;
}

QImage coverWithCorners(const QImage& picture, const QSize& size, double radius) {
    if (picture.isNull() || size.isEmpty())
        return {};
    QImage scaled = picture.scaled(size, Qt::KeepAspectRatioByExpanding, Qt::SmoothTransformation);
    const QRect middle(
        QPoint((scaled.width() - size.width()) / 2, (scaled.height() - size.height()) / 2), size);
    if (scaled.size() != size)
        scaled = scaled.copy(middle);
    if (radius <= 0)
        return scaled.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    QImage result(size, QImage::Format_ARGB32_Premultiplied);
    result.fill(Qt::transparent);
    QPainter painter(&result);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QBrush(scaled));
    painter.drawRoundedRect(QRectF(QPointF(0, 0), QSizeF(size)), radius, radius);
    return result;
}

CoverImageProvider::CoverImageProvider(Source source)
    : m_source(std::move(source)) {
    m_workers.setMaxThreadCount(workerCount);
}

CoverImageProvider::~CoverImageProvider() {
    close();
}

void CoverImageProvider::close() {
    m_isClosed = true;
    m_workers.waitForDone();
}

QQuickImageResponse* CoverImageProvider::requestImageResponse(const QString& id,
                                                              const QSize& requestedSize) {
    auto cancelled = std::make_shared<std::atomic_bool>(false);
    auto* response = new CoverResponse(cancelled);
    // The engine deletes the response only after finished(), which every job emits.
    m_workers.start([this, response, cancelled, request = parseCoverRequest(id), requestedSize] {
        if (m_isClosed || cancelled->load(std::memory_order_relaxed)) {
            response->deliver({});
            return;
        }
        response->deliver(coverWithCorners(m_source(request.key, requestedSize), requestedSize,
                                           request.radius * requestedSize.width()));
    });
    return response;
}

} // namespace halvane::views
