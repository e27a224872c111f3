// SPDX-License-Identifier: MIT
#include "metadata/readers/legacy_text.h"

#include <gtest/gtest.h>

namespace halvane::test {
namespace {

TEST(LegacyText, IsReadAsWhatItMostPlausiblyIs) {
    const std::pair<const char*, const char*> rows[] = {
        {"plain", "plain"},
        // GBK
        {"\xd6\xd0\xce\xc4", "中文"},
        {"\xd2\xbb\xd0\xa9", "一些"}, // would be two Cyrillic letters of UTF-8
        {"\xb0\xae", "爱"},
        {"\xce\xd2", "我"},
        {"Jay\xd6\xdc", "Jay周"},
        {"\xd6\xdc\xbd\xdc\xc2\xd7 - \xd2\xb9\xc7\xfa", "周杰伦 - 夜曲"},
        {"\xbd\xa8\xbc\xfe (Live)", "建件 (Live)"},
        {"\xd2\xb9\xc7", "夜"}, // cut within a character
        // Latin-1 and Windows-1252
        {"Bj\xf6rk", "Björk"},
        {"Beyonc\xe9", "Beyoncé"},
        {"J\xe4\xe4", "Jää"},
        {"Cr\xe9\xe9", "Créé"},
        {"M\xd6TLEY CR\xdc"
         "E",
         "MÖTLEY CRÜE"},
        {"\xe0 la carte", "à la carte"},
        {"\xc6nima", "Ænima"},
        {"don\x92t", "don’t"},
        {"Sigur R\xf3s", "Sigur Rós"},
        {"50\xb0", "50°"},
        // UTF-8
        {"Beyonc\xc3\xa9", "Beyoncé"},
        {"\xd0\x9a\xd0\xb8\xd0\xbd\xd0\xbe", "Кино"},
        {"\xe5\xa4\x9c\xe6\x9b\xb2", "夜曲"},
    };
    for (const auto& [bytes, text] : rows)
        EXPECT_EQ(decodeLegacyText(bytes).toStdString(), text);
}

} // namespace
} // namespace halvane::test
