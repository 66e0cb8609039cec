// One of each kind of control, at places that depend on no font; those on the right and below move
// with the size of the window. The line "state" says what has become of it all.
import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Window 2.15

ApplicationWindow {
    id: window
    width: 700; height: 500
    visible: true
    title: "Controls"
    property var done: []
    function note(text) { done = done.concat([text]) }

    menuBar: MenuBar {
        Menu {
            title: "&File"
            Action { text: "&Open"; onTriggered: note("open") }
            Menu { title: "&Recent"; Action { text: "Last"; onTriggered: note("last") } }
        }
        Menu { title: "&Edit"; Action { text: "Cut"; enabled: false } Action { text: "Copy"; onTriggered: note("copy") } }
    }
    Shortcut { sequence: "Ctrl+K"; onActivated: note("ctrl-k") }

    TextField { x: 10; y: 10; width: 150; height: 40; placeholderText: "Name"; selectByMouse: true }
    TextField { x: 170; y: 10; width: 150; height: 40; placeholderText: "Secret"; echoMode: TextInput.Password }
    ComboBox {
        objectName: "size"; x: 330; y: 10; width: 150; height: 40
        model: ["Small", "Medium", "Large"]; onActivated: note(currentText)
    }
    SpinBox { id: count; x: 490; y: 10; width: 150; height: 40; editable: true; onValueModified: note("count " + value) }
    CheckBox { x: 10; y: 60; width: 150; height: 40; text: "On"; onToggled: note("on " + checked) }
    Switch { x: 170; y: 60; width: 150; height: 40; text: "Fast"; onToggled: note("fast " + checked) }
    RadioButton { x: 330; y: 60; width: 150; height: 40; text: "Best"; onToggled: note("best") }
    Slider { id: level; x: 490; y: 60; width: 150; height: 40; stepSize: 0.25; onMoved: note("level " + value) }
    TabBar {
        id: tabs; x: 10; y: 110; width: 300; height: 40
        TabButton { height: 40; text: "One" }
        TabButton { height: 40; text: "Two"; onClicked: note("two") }
    }
    ListView {
        id: fruits; x: 10; y: 160; width: 150; height: window.height - 320; clip: true
        ScrollBar.vertical: ScrollBar { policy: ScrollBar.AlwaysOn; width: 10 }
        model: ListModel { Component.onCompleted: { for (var i = 1; i <= 60; ++i) append({title: "Fruit " + i}) } }
        delegate: ItemDelegate { width: 150; height: 30; text: title; onClicked: note(text) }
    }
    ListView {
        id: plain; x: 170; y: 160; width: 150; height: 120; clip: true
        model: ["Ash", "Beech", "Oak"]
        delegate: Rectangle {
            width: 150; height: 30; color: "lightgray"
            Text { text: modelData }
            MouseArea { anchors.fill: parent; acceptedButtons: Qt.LeftButton | Qt.RightButton
                onClicked: note(modelData + (mouse.button === Qt.RightButton ? " right" : "")); onDoubleClicked: note(modelData + " twice") }
        }
    }
    TextArea { id: text; x: 330; y: 110; width: 150; height: 100; selectByMouse: true }
    Rectangle {
        id: canvas; x: 330; y: 220; width: 150; height: 120; color: "white"
        MouseArea { anchors.fill: parent; onClicked: note("at " + mouse.x + " " + mouse.y) }
    }
    Rectangle {
        objectName: "tapped"; x: 490; y: 110; width: 80; height: 40; color: "gold"
        Text { text: "Tap" }
        TapHandler { onTapped: note("tap") }
    }
    Button { x: window.width - 110; y: 220; width: 100; height: 40; text: "Ask"; onClicked: dialog.open() }
    Button { x: window.width - 110; y: 270; width: 100; height: 40; text: "Off"; enabled: false; onClicked: note("off") }
    Button { x: window.width - 110; y: 320; width: 100; height: 40; text: "&Later"; onClicked: timer.start() }
    Timer { id: timer; interval: 400; onTriggered: late.visible = true }
    Button { id: late; x: window.width - 110; y: 370; width: 100; height: 40; text: "Late"; visible: false; onClicked: note("late") }
    Button { x: 490; y: 160; width: 100; height: 40; text: "Other"; onClicked: other.show() }
    Dialog {
        id: dialog; modal: true; x: 200; y: 150; width: 250; height: 160; title: "Sure?"
        standardButtons: Dialog.Yes | Dialog.No
        onAccepted: note("yes"); onRejected: note("no")
    }
    Window {
        id: other; x: 720; y: 50; width: 200; height: 100; title: "Second"
        Button { x: 10; y: 10; width: 100; height: 40; text: "Here"; onClicked: note("here") }
    }
    Label {
        objectName: "state"; x: 10; y: window.height - 150; width: 400; wrapMode: Text.Wrap
        text: done.join(", ")
    }
}
