import QtQuick 2.15

// One row of the track list.
Rectangle {
    property int row: 0

    width: 800
    height: 64
    color: row % 2 ? "#17202b" : "#1a2330"

    Rectangle {
        x: 12
        y: 8
        width: 48
        height: 48
        radius: 8
        color: "#4080c0"
        opacity: 0.9
    }
    Text {
        x: 76
        y: 10
        text: "Track " + (row + 1)
        font.family: "DejaVu Sans"
        font.pixelSize: 22
        color: "#e0e0e0"
    }
    Text {
        x: 76
        y: 38
        text: "Artist name " + (row % 37 + 1)
        font.family: "DejaVu Sans"
        font.pixelSize: 16
        color: "#8090a0"
    }
    Rectangle {
        y: 63
        width: 800
        height: 1
        color: "#2a3440"
    }
}
