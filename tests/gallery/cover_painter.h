// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>

namespace halvane::test {

/// A made-up cover: one of a few drawings in colours that follow from the seed.
QImage paintCover(int seed, int side);

} // namespace halvane::test
