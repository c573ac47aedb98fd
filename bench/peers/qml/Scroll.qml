import QtQuick 2.15
import Peer 1.0

// The scroll scene. The driver moves the list and turns the ring once per frame.
Rectangle {
    width: 1280
    height: 720
    color: "#10161e"

    Rectangle {
        width: 1280
        height: 80
        color: "#202a36"

        Text {
            x: 24
            anchors.verticalCenter: parent.verticalCenter
            text: "Media"
            font.family: "DejaVu Sans"
            font.pixelSize: 32
            color: "#e0e0e0"
        }
    }
    ListView {
        objectName: "list"
        y: 80
        width: 800
        height: 640
        clip: true
        interactive: false
        model: 200
        delegate: TrackRow {
            row: index
        }
    }
    Rectangle {
        x: 820
        y: 100
        width: 440
        height: 600
        radius: 12
        color: "#202a36"

        Ring {
            objectName: "ring"
            x: 120
            y: 120
            width: 200
            height: 200
        }
        Text {
            x: 40
            y: 400
            text: "Now playing"
            font.family: "DejaVu Sans"
            font.pixelSize: 28
            color: "#e0e0e0"
        }
    }
}
