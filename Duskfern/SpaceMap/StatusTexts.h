#pragma once

#include <QtQml/qqmlregistration.h>
#include <QtCore/QObject>
#include <QtCore/QString>

/// What the space map says of its work, for QML.
class StatusTexts : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    using QObject::QObject;

    /// How an analysis stands: the files met so far, or when it has ended the entries that could not be examined.
    Q_INVOKABLE static QString analysis(bool isScanning, qint64 scannedCount, qint64 skippedCount);

    /// That the selected file is being moved; `percent` of it is copied, negative where nothing is copied.
    Q_INVOKABLE static QString moving(int percent);
};
