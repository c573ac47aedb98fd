#include "GfxMemoryLabel.h"

#include "DisplayDevice.h"
#include "Style.h"

#include <TextureCache.h>

GfxMemoryLabel::GfxMemoryLabel(DisplayView* parent, DisplayDevice* device)
    : DisplayView(parent, "gfxMemoryUsage"), mScreen(device)
{
    setTouchBehavior(IgnoreTouches, true);
    const Style style(QStringLiteral("Debug/GfxMemoryUsage"));
    mFont = style.font();
    mFont.setPixelSize(style.fontSize() > 0 ? style.fontSize() : 16);
    resizeTo(device->width(), mFont.pixelSize() * 2);
    tick1s();
}

void GfxMemoryLabel::tick1s()
{
    const gfx::TextureCache* cache = gfx::TextureCache::instance();
    int layers = 0;
    const qint64 layerBytes = mScreen->layerMemory(&layers);
    const QString text = QStringLiteral("GL memory: textures %1 MB in %2, layers %3 MB in %4")
                             .arg(cache->currentSize() / 1048576.0, 0, 'f', 1)
                             .arg(cache->entryCount())
                             .arg(layerBytes / 1048576.0, 0, 'f', 1)
                             .arg(layers);
    if (text == mText)
        return;
    mText = text;
    update();
}

void GfxMemoryLabel::draw(QPainter& painter)
{
    painter.fillRect(QRect(0, 0, width(), height()), QColor(0, 0, 0, 160));
    painter.setFont(mFont);
    painter.setPen(mColor);
    painter.drawText(QRect(8, 0, width() - 16, height()), Qt::AlignLeft | Qt::AlignVCenter, mText);
}
