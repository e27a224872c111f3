// SPDX-License-Identifier: MIT
#include "metadata/readers/embedded_picture.h"

#include "metadata/readers/file_reader.h"

namespace halvane {

using namespace Qt::StringLiterals;

QByteArray EmbeddedPicture::read() const {
    return readAudioFile(m_path).metadata.tags.picture();
}

QString EmbeddedPicture::key() const {
    return u"embedded:%1@%2"_s.arg(m_path, QString::number(m_modificationDate, 'g', 17));
}

} // namespace halvane
