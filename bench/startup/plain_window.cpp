// SPDX-License-Identifier: MIT
// The least that a Qt Quick program with controls can show, to compare the start with.
#include <QGuiApplication>
#include <QQmlApplicationEngine>

int main(int argc, char** argv) {
    QGuiApplication app(argc, argv);
    QQmlApplicationEngine engine;
    engine.loadData(
        "import QtQuick\nimport QtQuick.Controls\n"
        "ApplicationWindow { width: 1360; height: 720; visible: true; color: '#202224'\n"
        "  Label { anchors.centerIn: parent; text: 'Plain'; color: 'white' } }");
    return app.exec();
}
