// SPDX-License-Identifier: MIT
#include "presentation/symbols.h"

#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>

#include <gtest/gtest.h>

namespace halvane {
namespace {

using namespace Qt::StringLiterals;

// A symbol that a view names and the table lacks would draw nothing at all.
TEST(Symbols, EveryNameInTheViewsHasAGlyph) {
    static const QRegularExpression named(uR"re(symbol: [^\n]*|"([a-z0-9]+(?:\.[a-z0-9]+)+)")re"_s);
    static const QRegularExpression quoted(uR"re("([a-z0-9.]+)")re"_s);
    int found = 0;
    QDirIterator views(QStringLiteral(HALVANE_VIEWS_FOLDER), {u"*.qml"_s}, QDir::Files,
                       QDirIterator::Subdirectories);
    while (views.hasNext()) {
        QFile file(views.next());
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        const QString text = QString::fromUtf8(file.readAll());
        auto lines = named.globalMatch(text);
        while (lines.hasNext()) {
            auto names = quoted.globalMatch(lines.next().captured());
            while (names.hasNext()) {
                const QString symbol = names.next().captured(1);
                EXPECT_FALSE(symbolGlyph(symbol).isEmpty())
                    << qPrintable(symbol) << " in " << qPrintable(file.fileName());
                ++found;
            }
        }
    }
    EXPECT_GT(found, 50);
}

} // namespace
} // namespace halvane
