// SPDX-License-Identifier: MIT
// Reads one file's tags a line from standard input, each text in hexadecimal digits and apart from
// the next by a blank, and writes what they are read as, apart by tabs.
#include "metadata/encodings/legacy_text.h"

#include <QList>

#include <iostream>
#include <string>

int main() {
    using namespace halvane;
    for (std::string line; std::getline(std::cin, line);) {
        QStringList texts;
        for (const QByteArray& field : QByteArray::fromStdString(line).split(' '))
            texts.append(undecidedText(QByteArray::fromHex(field)));
        QList<QString*> fields;
        for (QString& text : texts)
            fields.append(&text);
        decideTexts(fields, {});
        std::cout << texts.join(QLatin1Char('\t')).toStdString() << '\n';
    }
}
