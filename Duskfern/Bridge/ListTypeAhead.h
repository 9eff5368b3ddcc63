#pragma once

#include "Foundation/TypeAhead.h"

#include <QtCore/QAbstractItemModel>
#include <QtCore/QObject>
#include <QtQml/QQmlEngine>

/// `TypeAhead` for the rows of a model that has a role `name`.
class ListTypeAhead : public QObject {
    Q_OBJECT
    QML_ELEMENT

public:
    using QObject::QObject;

    Q_PROPERTY(QAbstractItemModel* model MEMBER m_model NOTIFY modelChanged)
    Q_SIGNAL void modelChanged();

    /// The row that fits after `text` was typed; -1 if none does, or if `text` is no beginning of a name.
    Q_INVOKABLE int type(const QString& text, int current) {
        const int role = m_model->roleNames().key("name");
        return m_typeAhead
            .type(text, current, m_model->rowCount(),
                  [&](int row) { return m_model->index(row, 0).data(role).toString().toStdString(); })
            .value_or(-1);
    }

private:
    QAbstractItemModel* m_model = nullptr;
    TypeAhead m_typeAhead;
};
