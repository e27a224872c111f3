// SPDX-License-Identifier: MIT
#pragma once

#include <QCollator>
#include <QString>
#include <QStringView>

#include <vector>

namespace halvane {

/// A collator of the user's language that disregards letter case. Each thread needs its own.
QCollator caseInsensitiveCollator();

/// The place of each text in the collator's order. Texts that compare the same share a place.
std::vector<quint32> collationRanks(const std::vector<QString>& texts, const QCollator& collator);

/// Whether a comes before b by their code points. QString compares UTF-16 units, which puts the
/// code points above U+FFFF before U+E000.
bool codePointLess(QStringView a, QStringView b);

} // namespace halvane
