// SPDX-License-Identifier: MIT
#include "app/remote/status_report.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QUrl>

#include <cmath>
#include <vector>

namespace halvane {

using namespace Qt::StringLiterals;

namespace {

struct Fact {
    QString name;
    QJsonValue value;
    QString text;
};

Fact textFact(const QString& name, const QString& text) {
    return {name, text, text};
}

Fact timeFact(const QString& name, qint64 microseconds) {
    const qint64 seconds = microseconds / 1'000'000;
    return {name, static_cast<double>(microseconds) / 1e6,
            u"%1:%2"_s.arg(seconds / 60).arg(seconds % 60, 2, 10, QChar(u'0'))};
}

QString repeatMode(const QString& loopStatus) {
    return loopStatus == "Playlist"_L1 ? u"all"_s : loopStatus == "Track"_L1 ? u"one"_s : u"off"_s;
}

std::vector<Fact> factsOf(const QVariantMap& player) {
    const auto track = player[u"Metadata"_s].toMap();
    const int volume = static_cast<int>(std::lround(player[u"Volume"_s].toDouble() * 100));
    const bool shuffle = player[u"Shuffle"_s].toBool();
    return {
        textFact(u"status"_s, player[u"PlaybackStatus"_s].toString().toLower()),
        textFact(u"title"_s, track[u"xesam:title"_s].toString()),
        textFact(u"artist"_s, track[u"xesam:artist"_s].toStringList().join(u", "_s)),
        textFact(u"album"_s, track[u"xesam:album"_s].toString()),
        timeFact(u"position"_s, player[u"Position"_s].toLongLong()),
        timeFact(u"length"_s, track[u"mpris:length"_s].toLongLong()),
        {u"volume"_s, volume, u"%1%"_s.arg(volume)},
        {u"shuffle"_s, shuffle, shuffle ? u"on"_s : u"off"_s},
        textFact(u"repeat"_s, repeatMode(player[u"LoopStatus"_s].toString())),
        textFact(u"file"_s, QUrl(track[u"xesam:url"_s].toString()).toLocalFile()),
    };
}

const QRegularExpression& placeholder() {
    static const QRegularExpression expression(u"\\{(\\w*)\\}"_s);
    return expression;
}

QString asText(const std::vector<Fact>& facts) {
    QString lines;
    for (const auto& fact : facts) {
        if (!fact.text.isEmpty())
            lines += u"%1: %2\n"_s.arg(fact.name, fact.text);
    }
    return lines;
}

QString asJson(const std::vector<Fact>& facts) {
    QJsonObject object;
    for (const auto& fact : facts)
        object.insert(fact.name, fact.value);
    return QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact)) + u'\n';
}

// What was put in is not looked through again: a title may hold braces.
QString filledIn(const QString& format, const std::vector<Fact>& facts) {
    QString result;
    qsizetype done = 0;
    for (auto found = placeholder().globalMatch(format); found.hasNext();) {
        const auto match = found.next();
        result += QStringView(format).mid(done, match.capturedStart() - done);
        done = match.capturedEnd();
        for (const auto& fact : facts) {
            if (fact.name == match.capturedView(1))
                result += fact.text;
        }
    }
    return result + format.mid(done) + u'\n';
}

} // namespace

Result<> checkStatusFormat(const QString& format) {
    if (format == "text"_L1 || format == "json"_L1)
        return {};
    auto found = placeholder().globalMatch(format);
    if (!found.hasNext())
        return Failure{
            u"\"%1\" is no format: text, json, or a text with names in braces"_s.arg(format)};
    const auto facts = factsOf({});
    while (found.hasNext()) {
        const auto name = found.next().captured(1);
        QStringList names;
        for (const auto& fact : facts)
            names.append(fact.name);
        if (!names.contains(name))
            return Failure{u"there is no {%1}, but {%2}"_s.arg(name, names.join(u"}, {"_s))};
    }
    return {};
}

QString statusReport(const QVariantMap& player, const QString& format) {
    const auto facts = factsOf(player);
    if (format == "text"_L1)
        return asText(facts);
    return format == "json"_L1 ? asJson(facts) : filledIn(format, facts);
}

} // namespace halvane
