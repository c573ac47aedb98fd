#pragma once

#include <QColor>
#include <QString>

class QPainter;
class QRectF;

// The scroll scene's fixed numbers, shared by the peers so that both draw what the
// demo's style file describes.
namespace PeerScene {

constexpr int kWidth = 1280;
constexpr int kHeight = 720;
constexpr int kHeaderHeight = 80;
constexpr int kListWidth = 800;
constexpr int kListHeight = 640;
constexpr int kRows = 200;
constexpr int kRowHeight = 64;
constexpr double kPixelsPerSecond = 200;
constexpr double kSecondsPerTurn = 3;
// The list starts over once its last row has come into view.
constexpr double kScrollExtent = double(kRows * kRowHeight - kListHeight);

inline const QColor kBackground{0x10, 0x16, 0x1e};
inline const QColor kHeader{0x20, 0x2a, 0x36};
inline const QColor kRowEven{0x1a, 0x23, 0x30};
inline const QColor kRowOdd{0x17, 0x20, 0x2b};
inline const QColor kArt{0x40, 0x80, 0xc0};
inline const QColor kTitle{0xe0, 0xe0, 0xe0};
inline const QColor kArtist{0x80, 0x90, 0xa0};
inline const QColor kDivider{0x2a, 0x34, 0x40};
inline const QColor kRing{0x60, 0xa0, 0xff};
constexpr double kArtOpacity = 0.9;
constexpr int kRingSize = 200;
constexpr int kRingStroke = 12;
// The demo's ring shows a value of 0.75: three quarters of a turn.
constexpr double kRingSpan = 0.75;

QString trackText(int row);
QString artistText(int row);
// List offset and ring angle (degrees) after `seconds` of animation.
double scrollOffset(double seconds);
double ringAngle(double seconds);
// The ring's arc, with round caps, inside `bounds` (stroke included).
void paintRing(QPainter& painter, const QRectF& bounds);

} // namespace PeerScene
