// SPDX-License-Identifier: MIT
#include "support/end_program.h"

#include <QGuiApplication>

#include <gtest/gtest.h>

// Windows are made and have the keyboard, but nobody sees them.
int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    testing::InitGoogleTest(&argc, argv);
    QGuiApplication app(argc, argv);
    halvane::test::endProgram(RUN_ALL_TESTS());
}
