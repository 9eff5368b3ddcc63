// Shows an empty Qt Quick window and ends after its first frame: the least time for any such program.

#include <QtGui/QGuiApplication>
#include <QtQml/QQmlApplicationEngine>
#include <QtQuick/QQuickWindow>

int main(int argc, char** argv) {
    const QGuiApplication application(argc, argv);
    QQmlApplicationEngine engine;
    engine.loadData("import QtQuick\nWindow { visible: true; width: 1180; height: 760 }");
    auto* const window = qobject_cast<QQuickWindow*>(engine.rootObjects().value(0));
    QObject::connect(window, &QQuickWindow::frameSwapped, &application, &QCoreApplication::quit);
    return QGuiApplication::exec();
}
