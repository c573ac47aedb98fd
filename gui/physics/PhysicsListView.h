#pragma once

#include "OrbisUIFrameworkExport.h"
#include "DisplayView.h"
#include "InterpolatedValue.h"
#include "ScrollHandler.h"

#include <QPointer>
#include <QVector>

/// A list that stacks its children along one direction, in list order, and scrolls
/// them under the finger with friction and edge springs. A drag that runs mostly
/// across the list instead slides the item under the finger sideways; when it is let
/// go the item returns and itemSwiped reports how far it was pulled. The list owns
/// the placement of its children.
class ORBIS_UI_EXPORT PhysicsListView : public DisplayView
{
    Q_OBJECT

public:
    PhysicsListView(DisplayView* parent, const char* name, Qt::Orientation direction,
                    float drag = ScrollHandler::kScrollFriction, float k = ScrollHandler::kScrollSpring,
                    float damping = ScrollHandler::kScrollDamping);

    void reconfigureConstants(float drag, float k, float damping);
    Qt::Orientation direction() const { return mDirection; }
    const ScrollHandler& scrollHandler() const { return mScroll; }
    ScrollHandler& scrollHandler() { return mScroll; }

    /// The touch point is in screen coordinates.
    void touched(int touch, QPoint point) override;
    void dragged(int touch, QSize delta) override;
    void released(int touch) override;
    void touchCanceled(int touch) override;
    void tick() override;

signals:
    void itemSwiped(PhysicsListView* view, DisplayView* item, int offset);

private:
    enum class DragMode
    {
        Undecided,
        Scrolling,
        Swiping
    };

    float along(QSize size) const;
    float across(QSize size) const;
    void decideDragMode();
    void moveBy(QSize delta);
    float releaseVelocity() const;
    void endTouch(bool reportSwipe);
    DisplayView* itemAt(QPoint local) const;
    void placeItems();

    Qt::Orientation mDirection;
    ScrollHandler mScroll;
    int mTouch = -1;
    DragMode mMode = DragMode::Undecided;
    QPoint mTouchPoint; ///< in the list's coordinates
    QSize mPendingDrag;
    QPointer<DisplayView> mSwipedItem;
    InterpolatedValue mSwipeOffset;
    /// Recent movements along the list (clock milliseconds, distance) for the release speed.
    QVector<QPair<qint64, float>> mMoves;
};
