import QtQuick 2.15
import QtQuick.Controls 2.15

Rectangle {
    TextField { x: 10; y: 10; width: 150; height: 40; placeholderText: "Inside" }
    ComboBox { id: kind; x: 170; y: 10; width: 150; height: 40; model: ["Warm", "Cold"] }
    Button { x: 330; y: 10; width: 100; height: 40; text: "Press"; onClicked: text = kind.currentText }
}
