// Shows an empty Qt Quick window, the least that any such program needs:
//     duskfern_empty_window          ends after its first frame
//     duskfern_empty_window rest     prints its megabytes when nothing happens

#include "Measure.h"

#include <QtCore/QTimer>
#include <QtGui/QGuiApplication>
#include <QtQml/QQmlApplicationEngine>
#include <QtQuick/QQuickWindow>

#include <cstdio>

int main(int argc, char** argv) {
    const QGuiApplication application(argc, argv);
    QQmlApplicationEngine engine;
    engine.loadData("import QtQuick\nWindow { visible: true; width: 1180; height: 760 }");
    if (argc > 1) {
        QTimer::singleShot(2000, &application, [] {
            std::printf("rest %.2f\n", ownMegabytes());
            QCoreApplication::quit();
        });
    } else {
        auto* const window = qobject_cast<QQuickWindow*>(engine.rootObjects().value(0));
        QObject::connect(window, &QQuickWindow::frameSwapped, &application, &QCoreApplication::quit);
    }
    return QGuiApplication::exec();
}
