#include "DevToolsOverlay.h"

#include "DevToolsDomTree.h"
#include "DevToolsStyleReport.h"
#include "DisplayDevice.h"

#include <QJsonArray>
#include <QJsonObject>

namespace {

QRect rectOfQuad(const QJsonArray& quad)
{
    return QRectF(QPointF(quad[0].toDouble(), quad[1].toDouble()),
                  QPointF(quad[4].toDouble(), quad[5].toDouble()))
        .toAlignedRect();
}

DisplayView* deepestAt(DisplayView* view, QPoint point, DisplayView* skip, DisplayDevice* screen)
{
    const DisplayViewList::List& children = view->children().list();
    for (auto it = children.constEnd(); it != children.constBegin();) {
        DisplayView* child = *--it;
        if (child == skip || !child->visibleFlag() || child->isDestroying())
            continue;
        const QPoint local = point - child->positionInParent();
        if (!QRect(QPoint(0, 0), child->size()).contains(local))
            continue;
        if (DisplayView* hit = deepestAt(child, local, skip, screen))
            return hit;
    }
    // The screen's containers are structure, not content: what lies below them counts.
    return view->parentView() == screen ? nullptr : view;
}

} // namespace

DevToolsOverlay::DevToolsOverlay(DisplayDevice* device)
    : DisplayView(device->overlays(), "inspectorOverlay"), mScreen(device), mColors(defaultColors())
{
    autoResizeToParent(QRectF(0, 0, 1, 1));
    setTouchBehavior(IgnoreTouches, true);
    hide();
}

DevToolsOverlay::Colors DevToolsOverlay::defaultColors()
{
    // The tools' own highlight colours.
    return {QColor(111, 168, 220, 168), QColor(147, 196, 125, 140), QColor(255, 229, 153, 168),
            QColor(246, 178, 107, 168)};
}

void DevToolsOverlay::highlight(DisplayView* view, const Colors& colors)
{
    mTarget = view;
    mColors = colors;
    mBoxes = Boxes();
    refresh();
    update();
}

void DevToolsOverlay::hideHighlight()
{
    mTarget = nullptr;
    updateVisibility();
}

void DevToolsOverlay::setInspectMode(bool on, const Colors& colors)
{
    mInspectMode = on;
    mColors = colors;
    setTouchBehavior(IgnoreTouches, !on);
    if (on)
        raise();
    else
        mTarget = nullptr; // the pick is over; the tools highlight by hovering again
    updateVisibility();
}

DevToolsOverlay::Boxes DevToolsOverlay::boxesOf(DisplayView* view) const
{
    const QJsonObject model = DevToolsStyleReport::boxModel(view).value(QStringLiteral("model")).toObject();
    return {rectOfQuad(model.value(QStringLiteral("content")).toArray()),
            rectOfQuad(model.value(QStringLiteral("border")).toArray()),
            rectOfQuad(model.value(QStringLiteral("margin")).toArray())};
}

void DevToolsOverlay::tick()
{
    refresh();
}

void DevToolsOverlay::refresh()
{
    updateVisibility();
    if (!mTarget)
        return;
    const Boxes boxes = boxesOf(mTarget);
    QString label = DevToolsDomTree::nodeNameOf(mTarget);
    const QString name = mTarget->viewName();
    if (name != label)
        label += QLatin1Char('#') + name;
    label += QStringLiteral("  %1 \u00d7 %2").arg(mTarget->width()).arg(mTarget->height());
    if (boxes == mBoxes && label == mLabel)
        return;
    mBoxes = boxes;
    mLabel = label;
    update();
}

void DevToolsOverlay::updateVisibility()
{
    const bool wanted = mTarget || mInspectMode;
    if (wanted != visibleFlag())
        show(wanted);
}

DisplayView* DevToolsOverlay::viewAt(QPoint point)
{
    DisplayView* hit = deepestAt(mScreen, point, this, mScreen);
    return hit ? hit : mScreen;
}

void DevToolsOverlay::draw(QPainter& painter)
{
    if (!mTarget)
        return;
    const QRegion margin = QRegion(mBoxes.margin).subtracted(mBoxes.border);
    const QRegion padding = QRegion(mBoxes.border).subtracted(mBoxes.content);
    for (const QRect& r : margin)
        painter.fillRect(r, mColors.margin);
    for (const QRect& r : padding)
        painter.fillRect(r, mColors.padding);
    painter.fillRect(mBoxes.content, mColors.content);

    // The label sits below the view, or above it when there is no room.
    const QFontMetrics metrics(painter.font());
    const QSize labelSize(metrics.horizontalAdvance(mLabel) + 12, metrics.height() + 6);
    QPoint at = mBoxes.margin.bottomLeft() + QPoint(0, 4);
    if (at.y() + labelSize.height() > height())
        at.setY(mBoxes.margin.top() - labelSize.height() - 4);
    at.setX(qBound(0, at.x(), qMax(0, width() - labelSize.width())));
    at.setY(qMax(0, at.y()));
    const QRect labelRect(at, labelSize);
    painter.fillRect(labelRect, QColor(32, 33, 36, 230));
    painter.setPen(QColor(255, 255, 255));
    painter.drawText(labelRect, Qt::AlignCenter, mLabel);
}

void DevToolsOverlay::touched(int, QPoint point)
{
    mTouchPoint = point;
    highlight(viewAt(point), mColors);
}

void DevToolsOverlay::dragged(int, QSize delta)
{
    mTouchPoint += QPoint(delta.width(), delta.height());
    DisplayView* view = viewAt(mTouchPoint);
    if (view != mTarget)
        highlight(view, mColors);
}

void DevToolsOverlay::released(int)
{
    if (mInspectMode && mTarget)
        emit viewPicked(mTarget);
}
