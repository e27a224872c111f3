// SPDX-License-Identifier: MIT
// The texts that describe a track's stream, length and size.
#include "metadata/file_dates.h"
#include "metadata/readers/tag_fields.h"
#include "metadata/track_metadata_loader.h"
#include "model/file_size.h"

#include <QUrl>

#include <cmath>

namespace halvane::TrackMetadataLoader {

using namespace Qt::StringLiterals;

QString sampleRateText(double hertz) {
    if (!(hertz > 0))
        return {};
    const double kilohertz = hertz / 1000;
    return QString::number(kilohertz, 'f', kilohertz == std::floor(kilohertz) ? 0 : 1) + u" kHz"_s;
}

QString bitDepthText(int bits) {
    return bits > 0 ? QString::number(bits) + u"-bit"_s : QString();
}

QString qualityLabel(const QString& format, const QString& sampleRate, const QString& bitDepth,
                     std::optional<qint64> bitrateKbps) {
    QString label = format;
    if (bitrateKbps) {
        label += u" "_s + QString::number(*bitrateKbps) + u" kbps"_s;
        return sampleRate.isEmpty() ? label : label + u" · "_s + sampleRate;
    }
    if (!sampleRate.isEmpty())
        label += u" "_s + sampleRate;
    if (!bitDepth.isEmpty())
        label += u" / "_s + bitDepth;
    return label;
}

QString formatDuration(double seconds) {
    const auto total = static_cast<qint64>(seconds);
    const auto twoDigits = [](qint64 value) {
        return (value < 10 ? u":0"_s : u":"_s) + QString::number(value);
    };
    const QString rest = twoDigits(total % 60);
    if (total < 3600)
        return QString::number(total / 60) + rest;
    return QString::number(total / 3600) + twoDigits(total / 60 % 60) + rest;
}

QString fileSizeString(const FileUrl& file) {
    const FileFacts facts = fileFacts(file.path());
    return facts.exists ? byteCountText(facts.size) : QString();
}

std::optional<qint64> parseYear(const QString& text) {
    return halvane::parseYear(text);
}

std::optional<QUrl> url(const QVariant& fromDroppedItem) {
    QUrl url;
    if (fromDroppedItem.metaType() == QMetaType::fromType<QUrl>())
        url = fromDroppedItem.toUrl();
    else if (fromDroppedItem.metaType() == QMetaType::fromType<QByteArray>())
        url = QUrl::fromEncoded(fromDroppedItem.toByteArray());
    else if (fromDroppedItem.metaType() == QMetaType::fromType<QString>())
        url = QUrl(fromDroppedItem.toString());
    return url.isValid() && !url.isEmpty() ? std::optional(url) : std::nullopt;
}

} // namespace halvane::TrackMetadataLoader
