#pragma once

#include "OrbisUIFrameworkExport.h"

#include "DisplayView.h"

#include <QColor>
#include <QPointer>

// The inspector's drawing on the display, in the device's "overlays" container: the
// highlighted view's margin, padding and content boxes with a label of its class,
// name and size, and, in inspect mode, the touch that picks a view for the tools.
// It follows the highlighted view as it moves and hides when there is nothing to show.
class ORBIS_UI_INTERNAL_EXPORT DevToolsOverlay : public DisplayView
{
    Q_OBJECT

public:
    struct Colors
    {
        QColor content;
        QColor padding;
        QColor border;
        QColor margin;
    };

    explicit DevToolsOverlay(DisplayDevice* device);

    void highlight(DisplayView* view, const Colors& colors);
    void hideHighlight();
    DisplayView* highlightedView() const { return mTarget; }
    // While on, touches go to the overlay: a finger highlights the view under it and
    // lifting it picks that view.
    void setInspectMode(bool on, const Colors& colors);
    bool inspectMode() const { return mInspectMode; }
    // Follows the highlighted view's frame, before the frame is drawn.
    void tick() override;
    // The deepest visible view at a point of the screen, the overlay left out.
    DisplayView* viewAt(QPoint point);

    void draw(QPainter& painter) override;
    void touched(int touch, QPoint point) override;
    void dragged(int touch, QSize delta) override;
    void released(int touch) override;

    static Colors defaultColors();

signals:
    void viewPicked(DisplayView* view);

private:
    struct Boxes
    {
        QRect content;
        QRect border;
        QRect margin;
        bool operator==(const Boxes& o) const
        {
            return content == o.content && border == o.border && margin == o.margin;
        }
    };
    Boxes boxesOf(DisplayView* view) const;
    void refresh();
    void updateVisibility();

    DisplayDevice* mScreen;
    QPointer<DisplayView> mTarget;
    Colors mColors;
    Boxes mBoxes;
    QString mLabel;
    bool mInspectMode = false;
    QPoint mTouchPoint;
};
