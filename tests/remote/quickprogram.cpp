#include "agent/startagent.h"

#include <QApplication>
#include <QClipboard>
#include <QPushButton>
#include <QQmlComponent>
#include <QQuickItem>
#include <QQuickView>
#include <QQuickWidget>
#include <QVBoxLayout>

#include <memory>

namespace {

const char items[] = R"(
import QtQuick 2.15
import QtQuick.Window 2.15

Rectangle {
    id: top
    width: 300; height: 200
    property string clicked

    Rectangle {
        objectName: "half"; color: "blue"
        x: 10; y: 10; width: 100; height: 40
        MouseArea { anchors.fill: parent; onClicked: top.clicked += "half " }
    }
    Rectangle {
        objectName: "whole"; color: "red"
        x: 150; y: 10; width: 100; height: 40
        Text { objectName: "label"; text: "whole" }
        MouseArea { objectName: "area"; anchors.fill: parent; onClicked: top.clicked += "whole " }
    }
    Rectangle {
        objectName: "cover"; color: "gray"
        x: 60; y: 0; width: 80; height: 100
        MouseArea { anchors.fill: parent; onClicked: top.clicked += "cover " }
    }
    TextInput { objectName: "input"; x: 10; y: 120; width: 200; height: 30 }
    Row {
        Rectangle { property string code; color: "plum" }
        Rectangle { property string code; color: "navy" }
        Rectangle { color: "teal" }
    }
    Window {
        objectName: "declared"; title: "dialog"
        Rectangle {}
    }
}
)";

// A window, or a widget.
template <typename Scene>
void fill(Scene *scene, const char *name)
{
    auto *component = new QQmlComponent(scene->engine(), scene);
    component->setData(items, QUrl(QStringLiteral("qrc:/items.qml")));
    QObject *top = component->create();
    top->setObjectName(QLatin1String(name));
    scene->setContent(QUrl(), component, top);
}

} // namespace

// With items of Qt Quick in a window of their own and in a widget. It links the agent.
int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    Morvex::startAgent();
    if (QCoreApplication::arguments().contains("return"))
        return 5;
    QWidget window;
    window.setProperty("hasClipboard", QGuiApplication::clipboard()->mimeData() != nullptr);
    window.setObjectName("window");
    QVBoxLayout layout(&window);
    auto *scene = new QQuickWidget;
    fill(scene, "inWidget");
    layout.addWidget(new QPushButton("above"));
    layout.addWidget(scene);
    window.show();
    QQuickView view;
    view.setTitle("Items");
    fill(&view, "inView");
    view.show();
    QQuickWindow later;
    later.setTitle("Items, later");
    return QApplication::exec();
}
