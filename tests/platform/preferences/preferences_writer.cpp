// SPDX-License-Identifier: MIT
// Usage: preferences_writer FILE FIRST
// Makes numbered changes without end, from number FIRST on, and writes the number of each to
// standard output when it is stored.
#include "numbered_change.h"
#include "platform/preferences/sqlite_preferences.h"
#include "support/manual_clock.h"

#include <QCoreApplication>

#include <array>
#include <charconv>
#include <unistd.h>

int main(int argc, char** argv) {
    const QCoreApplication app(argc, argv);
    const QStringList arguments = app.arguments();
    halvane::test::ManualClock clock; // stands still: nothing but the changes
    halvane::SqlitePreferences preferences(arguments.value(1), clock);
    for (quint64 number = arguments.value(2).toULongLong();; ++number) {
        halvane::test::makeNumberedChange(preferences, number);
        std::array<char, 24> line;
        char* end = std::to_chars(line.data(), line.data() + 20, number).ptr;
        *end++ = '\n';
        if (!preferences.isStored() || ::write(STDOUT_FILENO, line.data(), end - line.data()) < 0)
            return 1;
    }
}
