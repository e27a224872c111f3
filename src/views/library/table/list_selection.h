// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractItemModel>
#include <QObject>
#include <QPointer>
#include <QSet>
#include <QUuid>
#include <QVariant>
#include <QtQml/qqmlregistration.h>

namespace halvane::views {

/// The rows of a list that are chosen together, by Shift, Ctrl or "Select All". Remembers them by
/// their identity; those that leave the list are chosen no longer. Main thread. Does not own the
/// model.
class ListSelection : public QObject {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QAbstractItemModel* model READ model WRITE setModel NOTIFY modelChanged REQUIRED)
    Q_PROPERTY(QString idRole MEMBER m_idRole NOTIFY modelChanged REQUIRED)
    Q_PROPERTY(int count READ count NOTIFY changed)
    /// Grows with every change, for what depends on contains().
    Q_PROPERTY(int revision MEMBER m_revision NOTIFY changed)

  public:
    using QObject::QObject;

    [[nodiscard]] QAbstractItemModel* model() const { return m_model; }
    void setModel(QAbstractItemModel* model);
    [[nodiscard]] int count() const { return static_cast<int>(m_chosen.size()); }

    Q_INVOKABLE [[nodiscard]] bool contains(const QVariant& id) const;
    /// Chooses a row beside the others, or no longer. A range begins there.
    Q_INVOKABLE void toggle(int row);
    /// Chooses all rows from where a range begins, or from `from` where none does yet, to this one,
    /// and no others.
    Q_INVOKABLE void extend(int from, int to);
    Q_INVOKABLE void chooseAll();
    Q_INVOKABLE void clear();
    /// What a role holds of the chosen rows, in the list's order.
    Q_INVOKABLE [[nodiscard]] QStringList texts(const QString& role) const;

  Q_SIGNALS:
    void modelChanged();
    void changed();

  private:
    [[nodiscard]] int roleOf(const QString& name) const;
    [[nodiscard]] QUuid idAt(int row, int key) const;
    [[nodiscard]] int anchorRow() const;
    void dropWhatLeft();
    void tell();

    QPointer<QAbstractItemModel> m_model;
    QString m_idRole;
    QSet<QUuid> m_chosen;
    int m_revision = 0;
    QUuid m_anchor; ///< where a range begins; null: nowhere yet
};

} // namespace halvane::views
