#pragma once

#include <QQuickPaintedItem>

// The scene's ring for Qt Quick: painted once into the item's texture, then turned
// by the item's rotation, as a Qt Quick developer would build a spinner.
class RingItem : public QQuickPaintedItem
{
    Q_OBJECT

public:
    explicit RingItem(QQuickItem* parent = nullptr);
    void paint(QPainter* painter) override;
};
