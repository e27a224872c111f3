// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractItemModel>
#include <QElapsedTimer>
#include <QObject>
#include <QPointer>
#include <QVariant>
#include <QtQml/qqmlregistration.h>

namespace halvane::views {

/// Where the keyboard is in a list. Remembers the row by its identity, so that the row stays chosen
/// when rows come, go, move or are filtered away and back, and finds rows by typed text. Main
/// thread. Does not own the model.
class ListCursor : public QObject {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QAbstractItemModel* model READ model WRITE setModel NOTIFY modelChanged REQUIRED)
    Q_PROPERTY(QString idRole MEMBER m_idRole NOTIFY modelChanged REQUIRED)
    Q_PROPERTY(QString textRole MEMBER m_textRole NOTIFY modelChanged REQUIRED)
    /// The row, or -1.
    Q_PROPERTY(int index READ index WRITE setIndex NOTIFY indexChanged)

  public:
    using QObject::QObject;

    [[nodiscard]] QAbstractItemModel* model() const { return m_model; }
    void setModel(QAbstractItemModel* model);
    [[nodiscard]] int index() const { return m_index; }
    /// Chooses a row; a number beyond the ends takes the row at that end.
    void setIndex(int index);

    /// The first row whose role holds the value; -1 when there is none.
    Q_INVOKABLE [[nodiscard]] int rowWith(const QString& role, const QVariant& value) const;
    /// A role's value in a row; invalid outside the list.
    Q_INVOKABLE [[nodiscard]] QVariant value(int row, const QString& role) const;
    /// Adds typed text to what was typed within the last second, and chooses the next row whose
    /// text begins with it, going round. Typing one letter again goes on to the next such row.
    Q_INVOKABLE void type(const QString& text);

  Q_SIGNALS:
    void modelChanged();
    void indexChanged();

  private:
    [[nodiscard]] int roleOf(const QString& name) const;
    void refind();
    void place(int index);

    QPointer<QAbstractItemModel> m_model;
    QString m_idRole;
    QString m_textRole;
    int m_index = -1;
    QVariant m_id; ///< of the row at m_index, kept while that row is filtered away
    QString m_typed;
    QElapsedTimer m_sinceTyped;
};

} // namespace halvane::views
