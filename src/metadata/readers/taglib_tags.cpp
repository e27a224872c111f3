// SPDX-License-Identifier: MIT
#include "metadata/readers/taglib_tags.h"

#include "metadata/encodings/legacy_text.h"
#include "metadata/readers/id3v2_walk.h"
#include "metadata/readers/tag_names.h"

#include <taglib/apetag.h>
#include <taglib/attachedpictureframe.h>
#include <taglib/flacpicture.h>
#include <taglib/id3v1genres.h>
#include <taglib/id3v1tag.h>
#include <taglib/id3v2tag.h>
#include <taglib/infotag.h>
#include <taglib/mp4tag.h>
#include <taglib/popularimeterframe.h>
#include <taglib/textidentificationframe.h>
#include <taglib/xiphcomment.h>

#include <cstring>

namespace halvane {

namespace {

TagLib::String toTagLib(const QString& text) {
    return TagLib::String(text.toStdWString());
}

// The bytes up to the first zero.
QByteArray fieldBytes(const TagLib::ByteVector& data) {
    if (data.isEmpty())
        return {};
    return QByteArray(data.data(), static_cast<qsizetype>(strnlen(data.data(), data.size())));
}

class LegacyId3v1 final : public TagLib::ID3v1::StringHandler {
  public:
    [[nodiscard]] TagLib::String parse(const TagLib::ByteVector& data) const override {
        // Fields are padded to 30 bytes, with blanks by some writers.
        return toTagLib(undecidedText(fieldBytes(data).trimmed()));
    }
};

class LegacyId3v2 final : public TagLib::ID3v2::Latin1StringHandler {
  public:
    [[nodiscard]] TagLib::String parse(const TagLib::ByteVector& data) const override {
        return toTagLib(undecidedText(fieldBytes(data)));
    }
};

class LegacyInfo final : public TagLib::RIFF::Info::StringHandler {
  public:
    [[nodiscard]] TagLib::String parse(const TagLib::ByteVector& data) const override {
        const QByteArray bytes = fieldBytes(data);
        return toTagLib(bytes.isValidUtf8() ? QString::fromUtf8(bytes) : undecidedText(bytes));
    }
};

PictureRank rankOf(int type) {
    // The same numbers in ID3v2 and in FLAC.
    constexpr int noKind = 0;
    constexpr int frontCover = 3;
    return type == frontCover ? PictureRank::frontCover
           : type == noKind   ? PictureRank::other
                              : PictureRank::beside;
}

void addBytes(TagFields& fields, PictureRank rank, const TagLib::ByteVector& bytes) {
    if (bytes.isEmpty())
        return;
    // TagLib's vectors share their bytes, so nothing is copied until somebody asks.
    fields.addPicture(rank, [bytes] { return QByteArray(bytes.data(), bytes.size()); });
}

// Several values of one frame are one value for us.
QString joined(const TagLib::StringList& values) {
    return fromTagLib(values.toString(", "));
}

QStringList listOf(const TagLib::StringList& values) {
    QStringList list;
    for (const auto& value : values)
        list.append(fromTagLib(value));
    return list;
}

// A number stands for one of the genres of ID3v1.
QString genreText(const TagLib::StringList& values) {
    TagLib::StringList names;
    for (const auto& value : values) {
        bool isNumber = false;
        const int number = value.toInt(&isNumber);
        const auto name = isNumber ? TagLib::ID3v1::genre(number) : value;
        if (!name.isEmpty() && !names.contains(name))
            names.append(name);
    }
    return joined(names);
}

// Numbers and flags are no texts there.
QString mp4Text(const TagLib::MP4::Item& item, TagField field) {
    switch (field) {
    case TagField::discNumber:
    case TagField::trackNumber:
        return QString::number(item.toIntPair().first);
    case TagField::compilation:
        return QString::number(item.toBool() ? 1 : 0);
    default:
        return joined(item.toStringList());
    }
}

// One for each user.
void addPopularity(TagFields& fields, const TagLib::ID3v2::FrameList& frames) {
    for (const auto* frame : frames) {
        const auto* said = dynamic_cast<const TagLib::ID3v2::PopularimeterFrame*>(frame);
        if (!said)
            continue;
        fields.add(TagField::popularity, QString::number(said->rating()));
        fields.add(TagField::plays, QString::number(said->counter()));
    }
}

// Each is a list of its name and its values.
void addUserTexts(TagFields& fields, const TagLib::ID3v2::FrameList& frames) {
    for (const auto* frame : frames) {
        const auto* text = dynamic_cast<const TagLib::ID3v2::TextIdentificationFrame*>(frame);
        if (!text)
            continue;
        const auto list = text->fieldList();
        if (list.size() >= 2)
            addNamed(fields, fromTagLib(list[0]), fromTagLib(list[1]));
    }
}

} // namespace

QString fromTagLib(const TagLib::String& text) {
    return QString::fromWCharArray(text.toCWString(), static_cast<qsizetype>(text.size()));
}

void installLegacyTextReading() {
    static const bool installed = [] {
        static const LegacyId3v1 id3v1;
        static const LegacyId3v2 id3v2;
        static const LegacyInfo info;
        TagLib::ID3v1::Tag::setStringHandler(&id3v1);
        TagLib::ID3v2::Tag::setLatin1StringHandler(&id3v2);
        TagLib::RIFF::Info::Tag::setStringHandler(&info);
        return true;
    }();
    Q_UNUSED(installed)
}

void addNamed(TagFields& fields, const QString& name, const QString& value) {
    for (const TagName& row : TagNames::named)
        if (name.compare(QLatin1StringView(row.name), Qt::CaseInsensitive) == 0)
            fields.add(row.field, value);
}

void addId3v1(TagFields& fields, const TagLib::ID3v1::Tag& tag) {
    fields.add(TagField::title, fromTagLib(tag.title()));
    fields.add(TagField::artist, fromTagLib(tag.artist()));
    fields.add(TagField::albumName, fromTagLib(tag.album()));
    fields.add(TagField::type, fromTagLib(tag.genre()));
    if (tag.year() > 0)
        fields.add(TagField::creationDate, QString::number(tag.year()));
    fields.add(TagField::trackNumber, QString::number(tag.track()));
}

void addId3v2(TagFields& fields, const TagLib::ID3v2::Tag& tag, BoundedFile& file,
              qint64 tagOffset) {
    const auto& frames = tag.frameListMap();
    for (const TagName& row : TagNames::id3v2) {
        const auto found = frames.find(row.name);
        if (found == frames.end())
            continue;
        QStringList artists; // of all frames, because some writers make one for each
        for (const auto* frame : found->second) {
            const auto* text = dynamic_cast<const TagLib::ID3v2::TextIdentificationFrame*>(frame);
            if (!text)
                continue;
            const auto values = text->fieldList();
            QString value = row.field == TagField::type ? genreText(values) : joined(values);
            const bool isLost = value.isEmpty() && text->textEncoding() == TagLib::String::UTF16;
            if (isLost)
                value = id3v2Text(file, tagOffset, row.name);
            if (!namesArtists(row.field))
                fields.add(row.field, value);
            else
                artists += isLost ? QStringList(value) : listOf(values);
        }
        if (namesArtists(row.field))
            fields.addArtists(row.field, artists);
    }
    if (!frames.contains("TIT2") || !frames.contains("TPE1") || !frames.contains("TALB")) {
        // A frame that TagLib can't read hides those behind it.
        for (const TagName& row : TagNames::id3v2)
            if (!frames.contains(row.name))
                fields.add(row.field, id3v2Text(file, tagOffset, row.name));
    }
    if (const auto texts = frames.find("TXXX"); texts != frames.end())
        addUserTexts(fields, texts->second);
    if (const auto popularity = frames.find("POPM"); popularity != frames.end())
        addPopularity(fields, popularity->second);
    const auto pictures = frames.find("APIC"); // PIC of ID3v2.2 arrives under this name too
    if (pictures == frames.end())
        return;
    for (const auto* frame : pictures->second) {
        const auto* picture = dynamic_cast<const TagLib::ID3v2::AttachedPictureFrame*>(frame);
        // "-->" says that the bytes are an address, not a picture.
        if (picture && picture->mimeType() != "-->")
            addBytes(fields, rankOf(picture->type()), picture->picture());
    }
}

void addApe(TagFields& fields, const TagLib::APE::Tag& tag) {
    const auto& items = tag.itemListMap();
    for (const TagName& row : TagNames::ape) {
        const auto found = items.find(row.name);
        if (found == items.end() || found->second.type() != TagLib::APE::Item::Text)
            continue;
        if (namesArtists(row.field))
            fields.addArtists(row.field, listOf(found->second.values()));
        else
            fields.add(row.field, joined(found->second.values()));
    }
    for (const auto& [name, item] : items) {
        if (item.type() == TagLib::APE::Item::Text)
            addNamed(fields, fromTagLib(name), joined(item.values()));
        if (item.type() != TagLib::APE::Item::Binary || !name.startsWith("COVER ART"))
            continue;
        // A file name and a zero byte stand in front of the picture.
        const auto data = item.binaryData();
        const int zero = data.find('\0');
        if (zero >= 0)
            addBytes(fields,
                     name == "COVER ART (FRONT)"  ? PictureRank::frontCover
                     : name == "COVER ART (BACK)" ? PictureRank::beside
                                                  : PictureRank::other,
                     data.mid(static_cast<unsigned int>(zero) + 1));
    }
}

void addVorbis(TagFields& fields, TagLib::Ogg::XiphComment& tag) {
    const auto& comments = tag.fieldListMap();
    for (const TagName& row : TagNames::vorbis) {
        const auto found = comments.find(row.name);
        if (found == comments.end())
            continue;
        if (namesArtists(row.field)) {
            fields.addArtists(row.field, listOf(found->second));
            continue;
        }
        for (const auto& value : found->second)
            fields.add(row.field, fromTagLib(value));
    }
    // Some programs write whose rating it is behind the name, and rate from 0 to 1.
    for (const auto& [name, values] : comments) {
        addNamed(fields, fromTagLib(name), joined(values));
        if (name.startsWith("RATING:"))
            fields.add(TagField::shareRating, joined(values));
        else if (name.startsWith("PLAYCOUNT:"))
            fields.add(TagField::plays, joined(values));
    }
    for (const auto* picture : tag.pictureList())
        addPicture(fields, *picture);
}

void addPicture(TagFields& fields, const TagLib::FLAC::Picture& picture) {
    if (picture.mimeType() != "-->")
        addBytes(fields, rankOf(picture.type()), picture.data());
}

void addPicture(TagFields& fields, int type, const TagLib::ByteVector& bytes) {
    addBytes(fields, rankOf(type), bytes);
}

void addMp4(TagFields& fields, const TagLib::MP4::Tag& tag) {
    for (const TagName& row : TagNames::mp4) {
        const auto item = tag.item(row.name);
        if (!item.isValid())
            continue;
        if (namesArtists(row.field))
            fields.addArtists(row.field, listOf(item.toStringList()));
        else
            fields.add(row.field, mp4Text(item, row.field));
    }
    const QString named = QStringLiteral("----:com.apple.iTunes:");
    for (const auto& [name, item] : tag.itemMap())
        if (const QString key = fromTagLib(name); key.startsWith(named, Qt::CaseInsensitive))
            addNamed(fields, key.mid(named.size()), joined(item.toStringList()));
    const auto covers = tag.item("covr");
    if (!covers.isValid())
        return;
    // The list has no types: by convention its first picture is the front.
    auto rank = PictureRank::frontCover;
    for (const auto& cover : covers.toCoverArtList()) {
        if (cover.data().isEmpty())
            continue;
        addBytes(fields, rank, cover.data());
        rank = PictureRank::other;
    }
}

void addRiffInfo(TagFields& fields, const TagLib::RIFF::Info::Tag& tag) {
    for (const TagName& row : TagNames::riffInfo)
        fields.add(row.field, fromTagLib(tag.fieldText(row.name)));
}

} // namespace halvane
