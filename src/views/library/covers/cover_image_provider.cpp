// SPDX-License-Identifier: MIT
#include "views/library/covers/cover_image_provider.h"

#include <QPainter>
#include <QPainterPath>
#include <QUrl>

#include <atomic>
#include <utility>

namespace halvane::views {

using namespace Qt::StringLiterals;

namespace {

// What the engine waits for. It is deleted only after finished().
class CoverResponse : public QQuickImageResponse {
  public:
    explicit CoverResponse(QString key)
        : m_key(std::move(key)) {}

    void deliver(QImage image) {
        m_image = std::move(image);
        Q_EMIT finished();
    }
    [[nodiscard]] QQuickTextureFactory* textureFactory() const override {
        return QQuickTextureFactory::textureFactoryForImage(m_image);
    }
    // Without an error the view would take the empty picture for the cover.
    [[nodiscard]] QString errorString() const override {
        return m_image.isNull() ? u"This cover can't be shown: "_s + m_key : QString();
    }
    void cancel() override { m_isCancelled->store(true, std::memory_order_relaxed); }
    [[nodiscard]] std::shared_ptr<const std::atomic_bool> isCancelled() const {
        return m_isCancelled;
    }

  private:
    const QString m_key;
    const std::shared_ptr<std::atomic_bool> m_isCancelled =
        std::make_shared<std::atomic_bool>(false);
    QImage m_image;
};

} // namespace

CoverRequest parseCoverRequest(const QString& id) {
    const auto mark = id.lastIndexOf(u'?');
    CoverRequest request;
    request.key = QUrl::fromPercentEncoding(id.left(mark).toUtf8());
    if (mark >= 0) {
        const QString shape = id.mid(mark + 1);
        request.radius = shape.section(u'&', 0, 0).toDouble();
        request.revision = shape.section(u'&', 1, 1).toInt();
    }
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

// What a view has asked for. It gets one answer, at the latest when nobody can give another.
struct CoverImageProvider::Question {
    Question(std::shared_ptr<CoverSource> from, const QString& id, const QSize& pixels)
        : source(std::move(from))
        , request(parseCoverRequest(id))
        , size(pixels)
        , response(new CoverResponse(request.key))
        , cancelled(response.load()->isCancelled()) {}
    ~Question() {
        if (answer({}) && !isCancelled())
            source->leftUnread(request.key);
    }
    Question(const Question&) = delete;
    Question& operator=(const Question&) = delete;

    [[nodiscard]] bool isCancelled() const { return cancelled->load(std::memory_order_relaxed); }
    // False when it has been answered before.
    bool answer(const QImage& picture) {
        CoverResponse* const waiting = response.exchange(nullptr);
        if (waiting)
            waiting->deliver(coverWithCorners(picture, size, request.radius * size.width()));
        return waiting != nullptr;
    }

    const std::shared_ptr<CoverSource> source;
    const CoverRequest request;
    const QSize size;
    std::atomic<CoverResponse*> response; // null when it has been answered
    const std::shared_ptr<const std::atomic_bool> cancelled;
};

CoverImageProvider::CoverImageProvider(std::shared_ptr<CoverSource> source)
    : m_source(std::move(source)) {
}

CoverImageProvider::~CoverImageProvider() {
    close();
}

void CoverImageProvider::close() {
    m_workers.close();
    const std::lock_guard lock(m_mutex);
    for (const auto& open : std::exchange(m_questions, {}))
        if (const auto question = open.lock())
            question->answer({});
}

QQuickImageResponse* CoverImageProvider::requestImageResponse(const QString& id,
                                                              const QSize& requestedSize) {
    auto question = std::make_shared<Question>(m_source, id, requestedSize);
    QQuickImageResponse* const response = question->response;
    {
        const std::lock_guard lock(m_mutex);
        std::erase_if(m_questions, [](const auto& open) { return open.expired(); });
        m_questions.push_back(question);
    }
    m_workers.start(m_source->diskOf(question->request.key), [question]() -> CoverWorkers::Rest {
        const CoverRequest& request = question->request;
        QImage picture;
        if (question->isCancelled() || question->source->find(request, question->size, picture)) {
            question->answer(picture);
            return {};
        }
        return [question, bytes = question->source->read(request.key)] {
            question->answer(
                question->isCancelled()
                    ? QImage()
                    : question->source->decode(question->request, bytes, question->size));
        };
    });
    return response;
}

} // namespace halvane::views
