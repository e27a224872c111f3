// SPDX-License-Identifier: MIT
#include "metadata/readers/asf_reader.h"

#include "metadata/readers/tag_names.h"
#include "metadata/readers/taglib_stream.h"
#include "metadata/readers/taglib_tags.h"

#include <taglib/asffile.h>
#include <taglib/asfpicture.h>
#include <taglib/asftag.h>

namespace halvane {

using namespace Qt::StringLiterals;

namespace {

// Numbers and switches have kinds of their own.
QString textOf(const TagLib::ASF::Attribute& attribute) {
    using Attribute = TagLib::ASF::Attribute;
    switch (attribute.type()) {
    case Attribute::BoolType:
        return QString::number(attribute.toBool() ? 1 : 0);
    case Attribute::WordType:
        return QString::number(attribute.toUShort());
    case Attribute::DWordType:
        return QString::number(attribute.toUInt());
    default:
        return fromTagLib(attribute.toString());
    }
}

void addAsf(TagFields& fields, const TagLib::ASF::Tag& tag) {
    fields.add(TagField::title, fromTagLib(tag.title()));
    fields.add(TagField::artist, fromTagLib(tag.artist())); // the author
    const auto& attributes = tag.attributeListMap();
    for (const TagName& row : TagNames::asf) {
        const auto found = attributes.find(row.name);
        if (found == attributes.end())
            continue;
        QStringList values;
        for (const auto& attribute : found->second)
            values.append(textOf(attribute));
        if (namesArtists(row.field))
            fields.addArtists(row.field, values);
        else
            fields.add(row.field, values.join(u", "_s));
    }
    for (const auto& [name, values] : attributes)
        if (!values.isEmpty())
            addNamed(fields, fromTagLib(name), textOf(values.front()));
    const auto pictures = attributes.find("WM/Picture");
    if (pictures == attributes.end())
        return;
    for (const auto& attribute : pictures->second) {
        const auto picture = attribute.toPicture();
        if (picture.isValid())
            addPicture(fields, static_cast<int>(picture.type()), picture.picture());
    }
}

} // namespace

FileMetadata readAsf(BoundedFile& file) {
    constexpr double perMillisecond = 1e-3;
    FileMetadata result;
    TagLibStream stream(file);
    const TagLib::ASF::File asf(&stream);
    if (asf.tag())
        addAsf(result.tags, *asf.tag());
    if (const auto* properties = asf.audioProperties()) {
        result.stream.seconds = properties->lengthInMilliseconds() * perMillisecond;
        result.stream.sampleRate = properties->sampleRate();
        if (properties->codec() == TagLib::ASF::Properties::WMA9Lossless)
            result.stream.bitsPerSample = properties->bitsPerSample();
    }
    return result;
}

} // namespace halvane
