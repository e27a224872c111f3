// SPDX-License-Identifier: MIT
#include "support/end_program.h"

#include <QGuiApplication>

#include <gtest/gtest.h>

// Tests of windows run on the display there is, and without one on Qt's own in memory.
int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    if (qEnvironmentVariableIsEmpty("DISPLAY") && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    app.setQuitOnLastWindowClosed(false);
    halvane::test::endProgram(RUN_ALL_TESTS());
}
