// SPDX-License-Identifier: MIT
#pragma once

#include "base/result.h"

#include <QVariantMap>

namespace halvane {

/// What plays, for people and scripts, from the properties of an MPRIS player. The format is "text"
/// (a line for each fact), "json", or a text of the caller's with names in braces, as in "{artist}
/// - {title}". Ends with a line break.
QString statusReport(const QVariantMap& player, const QString& format);

/// The reason against a format; none when it is one.
Result<> checkStatusFormat(const QString& format);

} // namespace halvane
