// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QStringView>

namespace halvane {

/// The letters with which the pinyin of a text's Chinese characters begins, in lower case, by which
/// people look for names: "zjl" for 周杰伦. What stands between Chinese characters is one blank.
/// Empty without any. A character with several readings has its usual one. Any thread.
QByteArray pinyinInitials(QStringView text);

} // namespace halvane
