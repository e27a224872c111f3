// SPDX-License-Identifier: MIT
#include "gallery/made_library.h"

#include "gallery/cover_painter.h"

#include <QBuffer>
#include <QDataStream>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <array>
#include <cmath>

namespace halvane::test {

using namespace Qt::StringLiterals;

namespace {

class PaintedCover final : public ArtworkSource {
  public:
    explicit PaintedCover(int seed)
        : m_seed(seed) {}
    [[nodiscard]] QByteArray read() const override {
        QByteArray bytes;
        QBuffer buffer(&bytes);
        buffer.open(QIODevice::WriteOnly);
        paintCover(m_seed, 600).save(&buffer, "BMP");
        return bytes;
    }
    [[nodiscard]] QString key() const override { return u"painted-%1"_s.arg(m_seed); }

  private:
    int m_seed;
};

struct AlbumPlan {
    QString title;
    QString artist;
    int year = 0;
    QString format;
    QString genre;
    int discs = 0; // 0: its tracks are not numbered
};

const std::vector<AlbumPlan>& namedAlbums() {
    static const std::vector<AlbumPlan> albums{
        {u"Night Walk"_s, u"The Lanterns"_s, 2019, u"FLAC 96 kHz / 24-bit"_s, u"Indie"_s},
        {u"Slow Rivers"_s, u"Nina Vale"_s, 2021, u"ALAC 44.1 kHz / 16-bit"_s, u"Folk"_s},
        {u"Paper Moons"_s, u"Arden Quartet"_s, 2016, u"FLAC 44.1 kHz / 16-bit"_s, u"Classical"_s},
        {u"Northern Line"_s, u"Kite Season"_s, 2011, u"MP3 320 kbps · 44.1 kHz"_s, u"Rock"_s},
        {u"夜色温柔"_s, u"林间乐队"_s, 2020, u"FLAC 44.1 kHz / 16-bit"_s, u"流行"_s},
        {u"Kelp & Salt"_s, u"Mira Holt"_s, 2018, u"FLAC 48 kHz / 24-bit"_s, u"Ambient"_s, 2},
        {u"The Complete Recordings of the Harbour Street Sessions, Volumes One to Four"_s,
         u"The Harbour Street Philharmonic Chamber Players and Friends"_s, 1998,
         u"FLAC 192 kHz / 24-bit"_s, u"Jazz"_s},
        {u"ليالي الشرق"_s, u"فرقة النور"_s, 2007, u"AAC 256 kbps · 44.1 kHz"_s, u"Oriental"_s},
        {u"🌙 Moonlight ✨"_s, u"DJ 🦊 Fox"_s, 2023, u"MP3 256 kbps · 48 kHz"_s, u"Electronic"_s},
        {u"雨天"_s, u"林间乐队"_s, 2022, u"FLAC 96 kHz / 24-bit"_s, u"流行"_s},
        {u"שירי חורף"_s, u"להקת הגשם"_s, 2014, u"FLAC 44.1 kHz / 16-bit"_s, u"Pop"_s},
        {QString(), QString(), 0, u"WAV 44.1 kHz / 16-bit"_s, QString()},
    };
    return albums;
}

AlbumPlan albumPlan(int number) {
    if (number < static_cast<int>(namedAlbums().size()))
        return namedAlbums()[static_cast<size_t>(number)];
    static constexpr std::array firsts{"Silver", "Quiet",  "Distant", "Copper", "Winter", "Open",
                                       "Glass",  "Hollow", "Blue",    "Early",  "Second", "Golden"};
    static constexpr std::array seconds{"Harbour", "Lines",   "Letters", "Weather",
                                        "Rooms",   "Signals", "Gardens", "Hours",
                                        "Maps",    "Birds",   "Tides"};
    static constexpr std::array bands{"Juniper", "Alder",  "Marlow", "Sable", "Orrin",
                                      "Tessa",   "Corvin", "Elsin",  "Hazel", "Ro"};
    static constexpr std::array kinds{"Collective", "& the Tides", "Trio",     "Hart",
                                      "Lindqvist",  "Okafor",      "Ensemble", "Sound"};
    AlbumPlan plan = namedAlbums()[static_cast<size_t>(number) % 6];
    const auto text = [](const char* words) { return QString::fromUtf8(words); };
    const int volume = number / static_cast<int>(firsts.size() * seconds.size());
    plan.title = text(firsts[static_cast<size_t>(number) % firsts.size()]) + u' ' +
                 text(seconds[static_cast<size_t>(number / 12) % seconds.size()]) +
                 (volume > 0 ? u" %1"_s.arg(volume + 1) : QString());
    const int artist = number / 2;
    const int round = artist / static_cast<int>(bands.size() * kinds.size());
    plan.artist = text(bands[static_cast<size_t>(artist) % bands.size()]) + u' ' +
                  text(kinds[static_cast<size_t>(artist / 10) % kinds.size()]) +
                  (round > 0 ? u" %1"_s.arg(round + 1) : QString());
    plan.year = 1965 + number * 7 % 60;
    return plan;
}

constexpr std::array trackNames{u"Lamplight",
                                u"Half the Way Home",
                                u"Sodium",
                                u"Embers on the Rail",
                                u"Ferry Song",
                                u"The Long Blue",
                                u"Weather Report",
                                u"Kelp",
                                u"Harbour in the Rain, Looking North",
                                u"雨中的街灯",
                                u"Last Bus",
                                u"Undertow",
                                u"صباح الخير"};
constexpr std::array trackSeconds{261, 228, 302, 250, 213, 379, 177, 191, 264, 284, 239, 3684, 205};

QString trackPath(const LibraryPlan& plan, int album, int track) {
    return plan.folder +
           u"/%1/%2.wav"_s.arg(album, 4, 10, QChar(u'0')).arg(track + 1, 2, 10, QChar(u'0'));
}

QString timeText(int seconds) {
    const int hours = seconds / 3600;
    const QString rest = u"%1:%2"_s.arg(seconds / 60 % 60, hours > 0 ? 2 : 1, 10, QChar(u'0'))
                             .arg(seconds % 60, 2, 10, QChar(u'0'));
    return hours > 0 ? u"%1:%2"_s.arg(hours).arg(rest) : rest;
}

constexpr int rate = 22050;

// A few seconds of chords.
QByteArray chords() {
    QByteArray sound;
    QDataStream samples(&sound, QIODevice::WriteOnly);
    samples.setByteOrder(QDataStream::LittleEndian);
    for (int i = 0; i < rate * 4; ++i) {
        const double t = static_cast<double>(i) / rate;
        double sum = 0;
        for (int partial = 1; partial < 40; ++partial) {
            const double swell = 0.5 + 0.5 * std::sin(t * 1.5708 * (1 + partial % 5) + partial);
            sum += swell * std::sin(6.283185 * t * 55 * std::pow(partial, 1.25)) /
                   std::pow(partial, 0.75);
        }
        samples << static_cast<qint16>(std::lround(3800 * sum));
    }
    return sound;
}

// The chords over and over, and then silence to the end of the track: a hole, which takes no room.
void writeSound(const QString& path, int seconds, int sounding) {
    static const QByteArray sound = chords();
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return;
    const quint32 bytes = static_cast<quint32>(seconds) * rate * 2;
    const quint32 filled = static_cast<quint32>(sounding) * rate * 2;
    QDataStream out(&file);
    out.setByteOrder(QDataStream::LittleEndian);
    out.writeRawData("RIFF", 4);
    out << quint32(36 + bytes);
    out.writeRawData("WAVEfmt ", 8);
    out << quint32(16) << quint16(1) << quint16(1) << quint32(rate) << quint32(rate * 2)
        << quint16(2) << quint16(16);
    out.writeRawData("data", 4);
    out << bytes;
    for (quint32 written = 0; written < filled; written += static_cast<quint32>(sound.size()))
        out.writeRawData(
            sound.constData(),
            static_cast<int>(std::min(static_cast<quint32>(sound.size()), filled - written)));
    file.resize(file.pos() + bytes - filled);
}

void writePlaceholder(const QString& path, int seconds) {
    QFile file(path);
    if (file.open(QIODevice::WriteOnly))
        file.resize(static_cast<qint64>(seconds) * 116500); // a hole: it takes no room
}

// Every fifth track has a guest.
void placeOnDiscs(Track& track, int index, int tracksOfDisc) {
    track.albumTags.albumArtist = track.artist;
    track.albumTags.disc = static_cast<quint16>(index / tracksOfDisc + 1);
    track.albumTags.track = static_cast<quint16>(index % tracksOfDisc + 1);
    if (index % 5 == 1)
        track.artist += u" feat. Nina Vale"_s;
}

} // namespace

QString firstAlbumPath(const LibraryPlan& plan, int track) {
    return trackPath(plan, 0, track);
}

TrackRows makeLibrary(const LibraryPlan& plan) {
    TrackRows rows;
    for (int number = 0; number < plan.albums; ++number) {
        const AlbumPlan album = albumPlan(number);
        QDir().mkpath(plan.folder + u"/%1"_s.arg(number, 4, 10, QChar(u'0')));
        const int tracks = number == 0 ? 11 : 11 + number % 3;
        for (int index = 0; index < tracks; ++index) {
            const auto name =
                static_cast<size_t>(number == 0 ? index : index * 5 + number) % trackNames.size();
            // Other lengths on other albums, so that few of them pass for the same track.
            const int seconds = trackSeconds[name] + number % 53;
            const QString path = trackPath(plan, number, index);
            const bool sounds = plan.playable && number == 0;
            sounds ? writeSound(path, seconds, index == 0 ? seconds : 20)
                   : writePlaceholder(path, seconds);
            Track track;
            track.title = QString::fromUtf16(trackNames[name]);
            track.artist = album.artist;
            track.album = album.title;
            track.genre = album.genre;
            track.year = album.year;
            track.format = album.format;
            track.sampleRate = u"96 kHz"_s;
            track.bitDepth = u"24-bit"_s;
            track.durationSeconds = seconds;
            track.duration = timeText(seconds);
            track.sourceURL = FileUrl(path);
            track.fileSize = QFileInfo(path).size();
            if (album.discs > 0)
                placeOnDiscs(track, index, (tracks + album.discs - 1) / album.discs);
            if (plan.hasCovers && number % 13 != 6 && !album.title.isEmpty())
                track.coverImageData = Artwork(std::make_shared<PaintedCover>(number));
            rows.push_back(makeRow(std::move(track)));
        }
    }
    return rows;
}

} // namespace halvane::test
