// SPDX-License-Identifier: MIT
#pragma once

#include <QSet>
#include <QString>

namespace halvane {

/// Gives equal texts one shared buffer, because a library repeats its artists, albums, genres and
/// formats tens of thousands of times. One pool serves one batch of work. One thread.
class StringPool {
  public:
    QString shared(const QString& text) { return *m_texts.insert(text); }

  private:
    QSet<QString> m_texts;
};

} // namespace halvane
