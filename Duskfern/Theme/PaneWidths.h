#pragma once

#include <QtQml/qqmlregistration.h>
#include <QtCore/QObject>

/// The arithmetic of two panes side by side, for QML.
class PaneWidths : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    using QObject::QObject;

    /// The width of the first pane: `wanted`, within its own limits and leaving the second one its minimum. Both share
    /// `room` in the ratio of their minima if it does not suffice for these.
    Q_INVOKABLE static qreal first(qreal wanted, qreal room, qreal minimumFirst, qreal maximumFirst,
                                   qreal minimumSecond);
};
