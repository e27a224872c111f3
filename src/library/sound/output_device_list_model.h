// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractListModel>

namespace halvane {

class OutputDevices;

/// The devices of the output menu. Main thread.
class OutputDeviceListModel : public QAbstractListModel {
    Q_OBJECT

  public:
    enum Role {
        DeviceIdRole = Qt::UserRole + 1, ///< deviceId: number
        NameRole,                        ///< name
        SelectedRole,                    ///< selected: the user's choice
    };

    /// The devices must outlive it.
    explicit OutputDeviceListModel(const OutputDevices& devices, QObject* parent = nullptr);

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

  private:
    const OutputDevices& m_devices;
};

} // namespace halvane
