// SPDX-License-Identifier: MIT
#include "model/fresh_id.h"

#include <QRandomGenerator>

#include <array>
#include <cstring>

namespace halvane {

QUuid freshId() {
    thread_local QRandomGenerator generator = QRandomGenerator::securelySeeded();
    std::array<quint32, 4> random;
    generator.fillRange(random.data(), random.size());
    QUuid id(random[0], static_cast<ushort>(random[1]), static_cast<ushort>(random[1] >> 16), 0, 0,
             0, 0, 0, 0, 0, 0);
    std::memcpy(id.data4, &random[2], sizeof id.data4);
    id.data3 = (id.data3 & 0x0fff) | 0x4000;   // version 4
    id.data4[0] = (id.data4[0] & 0x3f) | 0x80; // the variant that goes with it
    return id;
}

} // namespace halvane
