// SPDX-License-Identifier: MIT
#include "metadata/encodings/legacy_text.h"

#include <QStringEncoder>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace halvane::test {
namespace {

QStringList decided(const QList<QByteArray>& fields, const QString& path = {}) {
    QStringList texts;
    for (const QByteArray& field : fields)
        texts.append(undecidedText(field));
    QList<QString*> pointers;
    for (QString& text : texts)
        pointers.append(&text);
    decideTexts(pointers, path);
    return texts;
}

QByteArray bytesIn(const char* encoding, const char* text) {
    QStringEncoder encode(encoding);
    return encode(QString::fromUtf8(text));
}

TEST(LegacyText, OneTextIsReadAsWhatItMostPlausiblyIs) {
    const std::pair<QByteArray, const char*> rows[] = {
        {"plain", "plain"},
        {"\xd2\xbb\xd0\xa9", "一些"}, // would be two Cyrillic letters of UTF-8
        {"\xce\xa4\xcf\xbc", "韦霞"}, // would be a Greek letter and one that no Greek word has
        {"\xd6\xdc\xbd\xdc\xc2\xd7 - \xd2\xb9\xc7\xfa", "周杰伦 - 夜曲"},
        {"\xf2\xa7\xb2\xa8", "颛波"}, // would be a character of UTF-8 that does not exist
        // Latin-1 and Windows-1252
        {"Bj\xf6rk", "Björk"},
        {"Beyonc\xe9", "Beyoncé"},
        {"J\xe4\xe4", "Jää"},
        {"Cr\xe9\xe9", "Créé"},
        {"M\xd6TLEY CR\xdc\x45", "MÖTLEY CRÜE"},
        {"\xe0 la carte", "à la carte"},
        {"\xc6nima", "Ænima"},
        {"don\x92t", "don’t"},
        {"Sigur R\xf3s", "Sigur Rós"},
        {"50\xb0", "50°"},
        {"Can\xe7\xe3o", "Canção"},
        {"L\xe1\xe1 L\xe1\xe1", "Láá Láá"},
        {"\xd6\xf0\x72\x75v\xedsi", "Öðruvísi"},
        {"\xbfQu\xe9?", "¿Qué?"},
        {"Motorhead\x85", "Motorhead…"},
        // UTF-8
        {"Beyonc\xc3\xa9", "Beyoncé"},
        {"\xd0\x9a\xd0\xb8\xd0\xbd\xd0\xbe", "Кино"},
        {"\xe5\xa4\x9c\xe6\x9b\xb2", "夜曲"},
        // blanks around stay what they are
        {" \xb0\xae ", " 爱 "},
    };
    for (const auto& [bytes, text] : rows)
        EXPECT_EQ(decided({bytes}).first().toStdString(), text);
}

TEST(LegacyText, ShortChineseNamesAreReadAlone) {
    for (const char* name : {"中文",        "爱",       "我",
                             "枫",          "一",       "Jay周",
                             "A爱",         "崔健",     "韩红",
                             "韩雪",        "那英",     "许巍",
                             "朴树",        "王菲",     "窦唯",
                             "建件 (Live)", "爱 Love",  "鄧麗君",
                             "張學友",      "劉德華",   "張國榮",
                             "陳百強",      "譚詠麟",   "愛",
                             "獨角戲",      "滾滾紅塵", "月亮代表我的心",
                             "十一月的萧邦"})
        EXPECT_EQ(decided({bytesIn("GB18030", name)}).first().toStdString(), name);
    for (const char* name : {"鄧麗君", "張學友", "劉德華", "陳奕迅", "獨角戲", "月亮代表我的心"})
        EXPECT_EQ(decided({bytesIn("Big5", name)}).first().toStdString(), name);
}

TEST(LegacyText, TheTextsOfAFileHelpEachOther) {
    struct Row {
        const char* encoding;
        QStringList texts;
    };
    const Row rows[] = {
        {"GB18030", {u"長崎"_s, u"應飛"_s, u"雍惠如"_s}},
        {"Big5", {u"彰化"_s, u"孫惠婷"_s, u"月光"_s}},
        {"Shift_JIS", {u"熊本"_s, u"宇多田ヒカル"_s, u"真夏の通り雨"_s}},
        {"EUC-KR", {u"이별"_s, u"김광석"_s, u"서른 즈음에"_s}},
        {"windows-1251", {u"Ода"_s, u"Кино"_s, u"Группа крови"_s}},
        {"windows-1253", {u"Νύχτα"_s, u"Χάρις Αλεξίου"_s, u"Η εποχή της αγάπης"_s}},
    };
    for (const Row& row : rows) {
        QList<QByteArray> fields;
        for (const QString& text : row.texts)
            fields.append(bytesIn(row.encoding, text.toUtf8().constData()));
        EXPECT_EQ(decided(fields), row.texts) << row.encoding;
    }
    // A foreign name among them stays itself.
    EXPECT_EQ(decided({bytesIn("GB18030", "中文"), "Bj\xf6rk", bytesIn("GB18030", "爱 Love")}),
              QStringList({u"中文"_s, u"Björk"_s, u"爱 Love"_s}));
    // Several texts of one field are decided each.
    QString joined = undecidedText("\xb4\xde\xbd\xa1") + u", "_s + undecidedText("Bj\xf6rk");
    QString* const texts[] = {&joined};
    decideTexts(texts, {});
    EXPECT_EQ(joined, u"崔健, Björk"_s);
}

TEST(LegacyText, ThePathHelps) {
    const QByteArray thor = "\xde\xfa"; // two letters of Icelandic, or one Chinese character
    EXPECT_EQ(decided({thor}, u"/music/Þú/01 Þú.mp3"_s).first(), u"Þú"_s);
    EXPECT_EQ(decided({thor}, u"/music/搡/搡.mp3"_s).first(), u"搡"_s);
    EXPECT_EQ(decided({bytesIn("EUC-KR", "소녀")}, u"/음악/소녀시대.mp3"_s).first(), u"소녀"_s);
}

TEST(LegacyText, AFieldOfFixedLengthMayEndWithinACharacter) {
    QByteArray title = bytesIn("GB18030", "突然好想你突然好想你突然好想你");
    ASSERT_EQ(title.size(), 30);
    EXPECT_EQ(decided({title.chopped(1)}).first(), u"突然好想你突然好想你突然好想"_s);
    // What breaks off earlier was never Chinese.
    EXPECT_EQ(decided({"\xd2\xb9\xc7"}).first().size(), 3);
}

} // namespace
} // namespace halvane::test
