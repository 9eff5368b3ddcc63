// Shows an empty Qt Quick window and ends after its first frame: what any such program takes at the least.

#include <QtQml/QQmlApplicationEngine>
#include <QtQuick/QQuickWindow>
#include <QtWidgets/QApplication>

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    QQmlApplicationEngine engine;
    engine.loadData("import QtQuick\nWindow { visible: true; width: 1180; height: 760 }");
    auto* const window = qobject_cast<QQuickWindow*>(engine.rootObjects().value(0));
    QObject::connect(window, &QQuickWindow::frameSwapped, &application, &QCoreApplication::quit);
    return QApplication::exec();
}
