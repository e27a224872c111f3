// SPDX-License-Identifier: MIT
#include <QGuiApplication>

#include <gtest/gtest.h>

// Windows are made and have the keyboard, but nobody sees them.
int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    testing::InitGoogleTest(&argc, argv);
    QGuiApplication app(argc, argv);
    return RUN_ALL_TESTS();
}
