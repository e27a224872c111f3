// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <QString>

#include <functional>

namespace halvane::test {

/// Waits until a window looks as it does in tests/views/approved/NAME.png, which is half its size.
/// Small areas are compared by their mean difference: what is drawn one way or another at its edges
/// passes, a missing symbol or another colour does not.
///
/// When it does not come to look so, NAME.approved.png, NAME.new.png and NAME.difference.png are
/// left in the folder that the failure names. With HALVANE_APPROVE set, the picture is taken for
/// the approved one once it has come to rest.
void expectPicture(const QString& name, const std::function<QImage()>& take);

} // namespace halvane::test
