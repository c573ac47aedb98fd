#include "RingItem.h"

#include "PeerScene.h"

RingItem::RingItem(QQuickItem* parent) : QQuickPaintedItem(parent)
{
    setAntialiasing(true);
}

void RingItem::paint(QPainter* painter)
{
    PeerScene::paintRing(*painter, boundingRect());
}
