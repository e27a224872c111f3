// SPDX-License-Identifier: MIT
#include <QCoreApplication>

#include <gtest/gtest.h>

// Tests of logic run with an event loop's infrastructure and no display.
int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    QCoreApplication app(argc, argv);
    return RUN_ALL_TESTS();
}
