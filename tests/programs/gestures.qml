// What reacts to more than a click, at places that depend on no font. The line "state" says what
// has become of it all.
import Qt.labs.qmlmodels 1.0
import QtQuick 2.15
import QtQuick.Controls 2.15

ApplicationWindow {
    id: window
    width: 700; height: 500
    visible: true
    title: "Gestures"
    property var done: []
    function note(text) { done = done.concat([text]) }

    Shortcut { sequence: "Space"; onActivated: note("play") }
    Button { x: 10; y: 10; width: 80; height: 40; text: "Push"; onClicked: note("push") }
    TextField { x: 100; y: 10; width: 80; height: 40; placeholderText: "Name"; onEditingFinished: note("name " + text) }
    ComboBox {
        id: kind; x: 190; y: 10; width: 120; height: 40; editable: true; wheelEnabled: true; model: ["Ash", "Oak"]
        onAccepted: note("typed " + editText); onActivated: note("chosen " + textAt(index))
    }
    DelayButton { x: 320; y: 10; width: 80; height: 40; text: "Delay"; delay: 600; onActivated: note("delayed") }
    Rectangle {
        id: row; x: 410; y: 10; width: 120; height: 40; color: "silver"
        HoverHandler { id: over }
        Button { visible: over.hovered; x: 60; width: 60; height: 40; text: "Hidden"; onClicked: note("hidden") }
    }
    Rectangle { id: zoom; x: 540; y: 10; width: 60; height: 40; color: "teal"; WheelHandler { onWheel: note("wheel " + event.angleDelta.y) } }
    ListView {
        x: 10; y: 60; width: 120; height: 120; clip: true
        highlight: Rectangle { color: "gold" }
        model: ListModel { Component.onCompleted: { for (var i = 0; i < 90; ++i) append({title: "Row " + i % 30}) } }
        delegate: ItemDelegate { width: 120; height: 30; text: title; onClicked: note(text + "=" + index) }
    }
    TableView {
        x: 140; y: 60; width: 200; height: 120; clip: true
        model: TableModel {
            TableModelColumn { display: "a" }
            TableModelColumn { display: "b" }
            Component.onCompleted: { for (var i = 0; i < 60; ++i) appendRow({a: "A" + i, b: "same"}) }
        }
        delegate: Rectangle {
            implicitWidth: 100; implicitHeight: 30; color: "wheat"; Text { text: display }
            MouseArea { anchors.fill: parent; onClicked: note(display + row) }
        }
    }
    SwipeView {
        x: 350; y: 60; width: 150; height: 120; clip: true
        onCurrentIndexChanged: note("page " + currentIndex)
        Page { Button { text: "First" } }
        Page { Button { width: 80; height: 40; text: "Second"; onClicked: note("second") } }
    }
    Rectangle { id: moved; x: 510; y: 70; width: 40; height: 40; color: "red"; DragHandler { onActiveChanged: if (!active) note("moved " + (moved.x > 540)) } }
    Rectangle {
        id: thrown; x: 510; y: 130; width: 40; height: 40; color: "blue"
        Drag.active: hand.drag.active; Drag.hotSpot.x: 20; Drag.hotSpot.y: 20
        MouseArea { id: hand; anchors.fill: parent; drag.target: thrown; onReleased: thrown.Drag.drop() }
    }
    DropArea { objectName: "bin"; x: 600; y: 130; width: 80; height: 40; onDropped: note("dropped") }
    Button { x: 10; y: 190; width: 80; height: 40; text: "Other"; onClicked: other.show() }
    ApplicationWindow {
        id: other; title: "Second"; width: 200; height: 100; onClosing: note("closed")
        TextField { y: 50; width: 100; height: 40; onAccepted: note("beside " + text) }
        Button { width: 100; height: 40; text: "Close"; onClicked: other.close() }
    }
    RangeSlider { id: span; x: 110; y: 190; width: 137; height: 40; second.onPressedChanged: if (!second.pressed) note("span " + Math.round(second.value * 10)) }
    SplitView {
        x: 280; y: 190; width: 160; height: 40
        Rectangle { id: narrow; color: "plum"; SplitView.preferredWidth: 40; onWidthChanged: wide.text = width }
        Text { id: wide }
    }
    Text { x: 450; y: 190; width: 60; height: 20; text: "<a href='near'>Linked</a>"; onLinkActivated: note(link) }
    TextArea {
        x: 520; y: 190; width: 100; height: 40; readOnly: true; textFormat: TextEdit.RichText; leftPadding: 30; topPadding: 15
        text: "<a href='far'>Also linked</a>"; onLinkActivated: note(link)
    }
    Button { x: 300; y: 320; width: 80; height: 40; text: "Menu"; onClicked: menu.popup(300, 360) }
    Menu { id: menu; width: 80; Menu { title: "Sub"; width: 80; Action { text: "Deep"; onTriggered: note("deep") } } }
    Rectangle { x: 630; y: 190; width: 60; height: 30; Text { text: "Own" } MouseArea { anchors.fill: parent; onClicked: note("own") } }
    MouseArea { id: sheet; property int low: 0; x: 480; y: 320; width: 110; height: 110; onPositionChanged: low = Math.max(low, mouse.y); onReleased: note("drawn to " + low) }
    Drawer { width: 150; height: window.height; edge: Qt.RightEdge; onOpened: note("drawn"); Button { width: 80; height: 40; text: "Within"; onClicked: note("within") } }
    Label { objectName: "state"; x: 10; y: 260; width: 600; wrapMode: Text.Wrap; text: done.join(", ") + wide.text }
}
