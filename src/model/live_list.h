// SPDX-License-Identifier: MIT
#pragma once

#include "model/enums.h"

#include <QString>
#include <QUuid>

namespace halvane {

/// A list that follows from a rule: what a search finds, in an order, or only the first of it.
/// Plain value, any thread.
struct LiveList {
    Q_GADGET
    Q_PROPERTY(QUuid id MEMBER id)
    Q_PROPERTY(QString name MEMBER name)
    Q_PROPERTY(QString search MEMBER search)
    Q_PROPERTY(halvane::LiveOrder order MEMBER order)
    Q_PROPERTY(bool isReversed MEMBER isReversed)
    Q_PROPERTY(int most MEMBER most)

  public:
    QUuid id; ///< null for one that is not stored yet
    QString name;
    QString search; ///< as it is typed in the search field; empty finds everything
    LiveOrder order = LiveOrder::library;
    bool isReversed = false; ///< what would be last comes first
    int most = 0;            ///< tracks in it; 0: no limit

    bool operator==(const LiveList&) const = default;
};

} // namespace halvane
