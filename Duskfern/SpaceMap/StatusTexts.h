#pragma once

#include <QtQml/qqmlregistration.h>
#include <QtCore/QObject>
#include <QtCore/QString>

/// Status texts of the space map, for QML.
class StatusTexts : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    using QObject::QObject;

    /// State of an analysis: the number of files found so far; after its end the number of entries not examined.
    Q_INVOKABLE static QString analysis(bool isScanning, qint64 scannedCount, qint64 skippedCount);

    /// Shown while the selected file is moved. `percent` is the part copied; negative if it is not copied.
    Q_INVOKABLE static QString moving(int percent);
};
