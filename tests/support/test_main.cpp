// SPDX-License-Identifier: MIT
#include "support/end_program.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

// Tests of logic run with an event loop's infrastructure and no display.
int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    QCoreApplication app(argc, argv);
    halvane::test::endProgram(RUN_ALL_TESTS());
}
