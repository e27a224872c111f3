// SPDX-License-Identifier: MIT
#include "library/sound/output_device_list_model.h"

#include "library/sound/output_devices.h"

namespace halvane {

OutputDeviceListModel::OutputDeviceListModel(const OutputDevices& devices, QObject* parent)
    : QAbstractListModel(parent)
    , m_devices(devices) {
    // The menu has few entries, so it resets when one comes or goes.
    connect(&devices, &OutputDevices::availableOutputDevicesChanged, this, [this] {
        beginResetModel();
        endResetModel();
    });
    connect(&devices, &OutputDevices::selectedOutputDeviceNameChanged, this, [this] {
        if (rowCount() > 0)
            Q_EMIT dataChanged(index(0), index(rowCount() - 1), {SelectedRole});
    });
}

int OutputDeviceListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_devices.availableOutputDevices().size());
}

QVariant OutputDeviceListModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const AudioOutput::OutputDevice& device =
        m_devices.availableOutputDevices()[static_cast<std::size_t>(index.row())];
    switch (role) {
    case DeviceIdRole:
        return device.id;
    case Qt::DisplayRole:
    case NameRole:
        return device.name;
    case SelectedRole:
        return index.row() == m_devices.selectedDeviceIndex();
    default:
        return {};
    }
}

QHash<int, QByteArray> OutputDeviceListModel::roleNames() const {
    return {{DeviceIdRole, "deviceId"}, {NameRole, "name"}, {SelectedRole, "selected"}};
}

} // namespace halvane
