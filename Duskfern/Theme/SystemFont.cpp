#include "Theme/SystemFont.h"

#include <QtCore/QEvent>
#include <QtGui/QFontInfo>
#include <QtGui/QGuiApplication>

SystemFont::SystemFont(QObject* parent) : QObject(parent) {
    qGuiApp->installEventFilter(this);
}

bool SystemFont::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::ApplicationFontChange) {
        Q_EMIT changed();
    }
    return QObject::eventFilter(watched, event);
}

QString SystemFont::family() {
    return QGuiApplication::font().family();
}

qreal SystemFont::pixelSize() {
    return QFontInfo(QGuiApplication::font()).pixelSize();
}
