#include "DisplayImage.h"
#include "ManualClock.h"
#include "StyleManager.h"
#include "control/Button.h"
#include "control/Label.h"
#include "control/Slider.h"
#include "control/Switch.h"
#include "input/touch/MouseTouchDriver.h"
#include "input/touch/TouchDevice.h"
#include "support/ColorView.h"
#include "support/GoldenImage.h"
#include "support/ScreenTest.h"

#include <QPainter>
#include <QPainterPath>
#include <functional>

// Reference scenes drawn on a real screen and compared with pictures kept in the
// tree: every control state, text, nine-patches, paths, clips, composition modes
// and layers. A change that moves pixels on purpose regenerates them with
// scripts/update-golden.sh.

namespace {

constexpr int kWidth = 400;
constexpr int kHeight = 240;
const QColor kGround(238, 240, 243);

// A view that paints whatever the scene asks for.
class PaintView : public DisplayView
{
public:
    using Painting = std::function<void(QPainter&)>;
    PaintView(DisplayView* parent, const char* name, Painting paint)
        : DisplayView(parent, name), mPaint(std::move(paint))
    {}
    void draw(QPainter& painter) override { mPaint(painter); }

private:
    Painting mPaint;
};

class GoldenGLTest : public ScreenTest
{
protected:
    void SetUp() override
    {
        StyleManager::instance()->initialize();
        // On a 1280x1024 screen too, clear of the corner where the pointer test clicks.
        mScreen = &open(kWidth, kHeight, QPoint(860, 700));
        auto* ground = new ColorView(mScreen->views(), "ground", kGround);
        ground->resizeTo(kWidth, kHeight);
        mScreen->makeCurrent();
        if (!GoldenImage::updating() && !GoldenImage::haveReferences())
            GTEST_SKIP() << "no reference pictures for the renderer "
                         << GoldenImage::rendererKey().toStdString()
                         << " (scripts/update-golden.sh makes them)";
    }

    DisplayView* root() const { return mScreen->views(); }
    template <typename View> View* place(View* view, int x, int y, int width, int height)
    {
        view->moveTo(x, y);
        view->resizeTo(width, height);
        return view;
    }
    PaintView* paint(DisplayView* parent, const QRect& rect, PaintView::Painting painting)
    {
        return place(new PaintView(parent, "paint", std::move(painting)), rect.x(), rect.y(), rect.width(),
                     rect.height());
    }
    void finger(bool down, QPoint point)
    {
        TouchDevice::getInstance(mScreen)->mouseDriver()->queueEvent(0, down, point.x(), point.y());
        mScreen->doTick();
    }
    // Animations run to their end before the picture.
    void settle()
    {
        for (int i = 0; i < 10; ++i) {
            mClock.advanceMs(100);
            mScreen->doTick();
        }
    }
    void expectScene(const char* name)
    {
        settle();
        EXPECT_TRUE(GoldenImage::matches(QString::fromLatin1(name), frame()));
    }

    ManualClock mClock;
    DisplayDevice* mScreen = nullptr;
};

// Paths and fills shared by several scenes.
QPainterPath star(const QPointF& centre, double radius)
{
    QPainterPath path;
    for (int i = 0; i < 5; ++i) {
        const double angle = M_PI / 2 + i * 4 * M_PI / 5;
        const QPointF point = centre + QPointF(radius * std::cos(angle), -radius * std::sin(angle));
        i ? path.lineTo(point) : path.moveTo(point);
    }
    path.closeSubpath();
    return path;
}

} // namespace

// Controls in each state.

TEST_F(GoldenGLTest, ButtonStates)
{
    const auto button = [this](const char* name, const char* title, const char* style, int x, int y) {
        return place(new Button(root(), name, QLatin1String(title), QLatin1String(style)), x, y, 170, 70);
    };
    button("normal", "Normal", "Button/Default", 20, 20);
    Button* pressed = button("pressed", "Pressed", "Button/Default", 210, 20);
    button("disabled", "Disabled", "Button/Default", 20, 130)->disable();
    button("selected", "Selected", "Button/Toggle", 210, 130)->setSelected(true);
    settle();
    finger(true, pressed->rect().center());
    expectScene("button_states");
    finger(false, pressed->rect().center());
}

TEST_F(GoldenGLTest, ButtonKinds)
{
    const auto button = [this](const char* name, const char* title, const char* style, int x, int y) {
        return place(new Button(root(), name, QLatin1String(title), QLatin1String(style)), x, y, 170, 64);
    };
    button("primary", "Start", "Button/Primary", 20, 10);
    button("confirm", "Confirm", "Button/Confirm", 210, 10);
    button("destructive", "Delete", "Button/Destructive", 20, 84);
    button("flat", "Flat", "Button/ToggleFlat", 210, 84);
    place(new Button(root(), "round", QString(), QStringLiteral("Button/Round")), 20, 158, 72, 72);
    auto* toggle = place(new Button(root(), "roundToggle", QString(), QStringLiteral("Button/RoundToggle")),
                         110, 158, 72, 72);
    toggle->setIcon(DisplayImage(QStringLiteral("icons/power")));
    toggle->setSelected(true);
    expectScene("button_kinds");
}

TEST_F(GoldenGLTest, PressedPrimaryButtonDraggedOut)
{
    auto* button =
        place(new Button(root(), "primary", QStringLiteral("Hold"), QStringLiteral("Button/Primary")), 40, 40,
              320, 80);
    button->setStayPressedWhenDraggedOut(true);
    finger(true, QPoint(200, 80));
    finger(true, QPoint(200, 220));
    expectScene("button_pressed_dragged_out");
    finger(false, QPoint(200, 220));
}

TEST_F(GoldenGLTest, SwitchStates)
{
    auto* off = place(new Switch(root(), "off"), 10, 10, 80, 40);
    off->setOn(false, false);
    auto* on = place(new Switch(root(), "on"), 120, 10, 80, 40);
    on->setOn(true, false);
    auto* disabled = place(new Switch(root(), "disabled"), 10, 70, 80, 40);
    disabled->setOn(true, false);
    disabled->disable();
    auto* sliding = place(new Switch(root(), "sliding"), 120, 70, 80, 40);
    sliding->setOn(true, true);
    mClock.advanceMs(int(Switch::kSlideSeconds * 500));
    mScreen->doTick();
    EXPECT_TRUE(GoldenImage::matches(QStringLiteral("switch_states"), frame()));
}

TEST_F(GoldenGLTest, SliderValues)
{
    for (int i = 0; i < 3; ++i) {
        auto* slider = place(new Slider(root(), "slider"), 10, 10 + i * 40, 170, 30);
        slider->setRange(0, 100);
        slider->setValue(i * 50);
    }
    auto* vertical = place(new Slider(root(), "vertical", Qt::Vertical), 195, 10, 30, 140);
    vertical->setRange(0, 10);
    vertical->setStep(2);
    vertical->setValue(7);
    expectScene("slider_values");
}

TEST_F(GoldenGLTest, SliderPressedAndDisabled)
{
    auto* pressed = place(new Slider(root(), "pressed"), 10, 20, 220, 40);
    pressed->setRange(0, 1);
    pressed->setValue(0.25);
    auto* disabled = place(new Slider(root(), "disabled"), 10, 100, 220, 40);
    disabled->setRange(0, 1);
    disabled->setValue(0.75);
    disabled->disable();
    settle();
    finger(true, QPoint(65, 40));
    finger(true, QPoint(150, 40));
    EXPECT_TRUE(GoldenImage::matches(QStringLiteral("slider_pressed_disabled"), frame()));
    finger(false, QPoint(150, 40));
}

// Text.

TEST_F(GoldenGLTest, LabelAlignments)
{
    const char* alignments[] = {"left|top", "hcenter|vcenter", "right|bottom"};
    for (int i = 0; i < 3; ++i) {
        auto* label = place(new Label(root(), "label", QStringLiteral("Range"),
                                      QStringLiteral("FontSize:20; Color:#15181c; BackgroundColor:#ffffff; "
                                                     "Alignment:%1")
                                          .arg(alignments[i])),
                            10, 10 + i * 50, 220, 44);
        (void)label;
    }
    expectScene("label_alignments");
}

TEST_F(GoldenGLTest, LabelWrapElideAndShadow)
{
    place(new Label(root(), "wrap",
                    QStringLiteral("Charging will finish at 06:40 when the battery reaches its limit"),
                    QStringLiteral("FontSize:16; TextFlags:wordwrap; LineSpacing:2; Color:#1f6feb")),
          10, 5, 220, 60);
    place(new Label(root(), "elide",
                    QStringLiteral("Navigation to the nearest charging station with free connectors"),
                    QStringLiteral("FontSize:16; ElideMode:middle; Color:#15181c")),
          10, 70, 220, 30);
    place(new Label(root(), "shadow", QStringLiteral("Shadowed"),
                    QStringLiteral("FontSize:30; Font:bold; Color:#ffffff; Shadow:1; ShadowColor:#80000000; "
                                   "ShadowOffset:2,2; Alignment:center")),
          10, 105, 220, 50);
    expectScene("label_wrap_elide_shadow");
}

TEST_F(GoldenGLTest, TextSizesAndSpacing)
{
    int y = 2;
    for (int size : {10, 14, 22, 34}) {
        place(new Label(
                  root(), "size", QStringLiteral("Aa 0123 ÄÖÜ"),
                  QStringLiteral("FontSize:%1; Color:#202428; LetterSpacing:%2").arg(size).arg(size / 10)),
              8, y, 228, size + 10);
        y += size + 12;
    }
    expectScene("text_sizes_spacing");
}

TEST_F(GoldenGLTest, TextThroughThePainter)
{
    paint(root(), QRect(0, 0, kWidth, kHeight), [](QPainter& painter) {
        QFont font = painter.font();
        font.setPixelSize(18);
        painter.setFont(font);
        painter.setPen(QColor(20, 90, 200));
        painter.drawText(QRect(10, 10, 220, 30), Qt::AlignLeft, QStringLiteral("Left aligned"));
        painter.setPen(QColor(200, 40, 40, 160));
        painter.drawText(QRect(10, 50, 220, 30), Qt::AlignRight, QStringLiteral("Translucent"));
        painter.save();
        painter.translate(120, 120);
        painter.rotate(-12);
        painter.setPen(Qt::black);
        painter.drawText(QRect(-100, -15, 200, 30), Qt::AlignCenter, QStringLiteral("Rotated text"));
        painter.restore();
    });
    expectScene("text_painter");
}

// Pictures.

TEST_F(GoldenGLTest, NinePatchesAtSeveralSizes)
{
    DisplayImage patch(QStringLiteral("button.png"));
    ASSERT_FALSE(patch.isNull());
    patch.setCuts(QMargins(16, 16, 16, 16));
    paint(root(), QRect(0, 0, kWidth, kHeight), [patch](QPainter& painter) {
        patch.draw(painter, QRect(5, 5, 60, 40));
        patch.draw(painter, QRect(75, 5, 160, 40));
        patch.draw(painter, QRect(5, 55, 40, 100));
        patch.draw(painter, QRect(55, 55, 180, 100));
    });
    expectScene("nine_patch_sizes");
}

TEST_F(GoldenGLTest, PicturesTiledCentredAndStretched)
{
    QImage checker(16, 16, QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < 16; ++y)
        for (int x = 0; x < 16; ++x)
            checker.setPixel(x, y, (x / 4 + y / 4) % 2 ? qRgba(30, 110, 220, 255) : qRgba(0, 0, 0, 0));
    DisplayImage tiled(checker);
    tiled.setFill(DisplayImage::Tile);
    DisplayImage centred(checker);
    centred.setFill(DisplayImage::Center);
    DisplayImage stretched(checker);
    paint(root(), QRect(0, 0, kWidth, kHeight), [=](QPainter& painter) {
        tiled.draw(painter, QRect(5, 5, 110, 70));
        centred.draw(painter, QRect(125, 5, 110, 70));
        stretched.draw(painter, QRect(5, 85, 230, 70));
    });
    expectScene("pictures_tile_center_stretch");
}

TEST_F(GoldenGLTest, IconsRecolouredInButtons)
{
    auto* button =
        place(new Button(root(), "icon", QStringLiteral("Power"), QStringLiteral("Button/Primary")), 20, 20,
              360, 80);
    button->setIcon(DisplayImage(QStringLiteral("icons/power")));
    auto* image = place(new Button(root(), "image", QStringLiteral("Image"), QStringLiteral("Button/Image")),
                        20, 130, 200, 80);
    image->setIcon(DisplayImage(QStringLiteral("icons/check")));
    expectScene("button_icons");
}

// Paths.

TEST_F(GoldenGLTest, PathFillRules)
{
    paint(root(), QRect(0, 0, kWidth, kHeight), [](QPainter& painter) {
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(QColor(220, 60, 40));
        QPainterPath oddEven = star(QPointF(60, 80), 55);
        oddEven.setFillRule(Qt::OddEvenFill);
        painter.drawPath(oddEven);
        QPainterPath winding = star(QPointF(180, 80), 55);
        winding.setFillRule(Qt::WindingFill);
        painter.setBrush(QColor(40, 120, 220));
        painter.drawPath(winding);
    });
    expectScene("path_fill_rules");
}

TEST_F(GoldenGLTest, PathCurvesAndStrokes)
{
    paint(root(), QRect(0, 0, kWidth, kHeight), [](QPainter& painter) {
        painter.setRenderHint(QPainter::Antialiasing);
        QPainterPath curve;
        curve.moveTo(10, 140);
        curve.cubicTo(60, -20, 180, 180, 230, 20);
        painter.setPen(QPen(QColor(30, 30, 30), 8, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter.drawPath(curve);
        painter.setPen(QPen(QColor(230, 120, 20), 3, Qt::SolidLine, Qt::FlatCap, Qt::MiterJoin));
        painter.drawPolyline(
            QPolygonF({QPointF(20, 20), QPointF(60, 60), QPointF(100, 20), QPointF(140, 60)}));
        painter.setPen(QPen(QColor(20, 160, 90), 1));
        painter.drawLine(QPointF(10.5, 150.5), QPointF(230.5, 100.5));
    });
    expectScene("path_curves_strokes");
}

TEST_F(GoldenGLTest, DashedAndRoundedShapes)
{
    paint(root(), QRect(0, 0, kWidth, kHeight), [](QPainter& painter) {
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(QColor(40, 40, 160), 3, Qt::DashLine));
        painter.setBrush(QColor(200, 220, 255));
        painter.drawRoundedRect(QRectF(10, 10, 140, 70), 14, 14);
        painter.setPen(QPen(QColor(160, 40, 40), 2, Qt::DotLine));
        painter.setBrush(Qt::NoBrush);
        painter.drawEllipse(QRectF(150, 20, 80, 120));
        painter.setPen(Qt::NoPen);
        painter.setBrush(QColor(40, 160, 80, 180));
        painter.drawPie(QRectF(20, 90, 70, 60), 30 * 16, 270 * 16);
    });
    expectScene("path_dashes_rounded");
}

TEST_F(GoldenGLTest, Gradients)
{
    paint(root(), QRect(0, 0, kWidth, kHeight), [](QPainter& painter) {
        QLinearGradient linear(0, 0, 220, 0);
        linear.setColorAt(0, QColor(10, 20, 40));
        linear.setColorAt(0.5, QColor(60, 160, 255));
        linear.setColorAt(1, QColor(255, 255, 255));
        painter.fillRect(QRect(10, 10, 220, 60), linear);
        QRadialGradient radial(QPointF(120, 115), 40);
        radial.setColorAt(0, QColor(255, 220, 80));
        radial.setColorAt(1, QColor(255, 220, 80, 0));
        painter.fillRect(QRect(10, 80, 220, 75), radial);
    });
    expectScene("gradients");
}

// Clips.

TEST_F(GoldenGLTest, ViewClipCutsChildren)
{
    auto* clipped = place(new ColorView(root(), "clipped", QColor(255, 255, 255)), 20, 20, 200, 120);
    clipped->setClip(QRect(20, 20, 120, 60));
    place(new ColorView(clipped, "child", QColor(230, 80, 60)), -10, -10, 100, 100);
    place(new Label(clipped, "text", QStringLiteral("Clipped text runs on"),
                    QStringLiteral("FontSize:20; Color:#15181c")),
          30, 60, 200, 30);
    expectScene("clip_view");
}

TEST_F(GoldenGLTest, PainterClipRectAndPath)
{
    paint(root(), QRect(0, 0, kWidth, kHeight), [](QPainter& painter) {
        painter.setClipRect(QRect(20, 20, 90, 120));
        painter.fillRect(QRect(0, 0, 240, 160), QColor(60, 130, 220));
        QPainterPath round;
        round.addEllipse(QRectF(120, 20, 110, 120));
        painter.setClipPath(round);
        painter.fillRect(QRect(0, 0, 240, 160), QColor(230, 150, 30));
        painter.setClipRect(QRect(150, 60, 200, 30), Qt::IntersectClip);
        painter.fillRect(QRect(0, 0, 240, 160), QColor(30, 30, 30));
    });
    expectScene("clip_painter");
}

TEST_F(GoldenGLTest, NestedScrolledClips)
{
    auto* outer = place(new ColorView(root(), "outer", QColor(210, 214, 220)), 10, 10, 220, 140);
    outer->setClip(QRect(0, 0, 220, 140));
    auto* inner = place(new ColorView(outer, "inner", QColor(250, 250, 250)), 30, 20, 160, 100);
    inner->setClip(QRect(10, 10, 140, 80));
    for (int i = 0; i < 6; ++i)
        place(new ColorView(inner, "row", QColor::fromHsv(i * 50, 160, 230)), -20 + i * 10, i * 22, 180, 20);
    expectScene("clip_nested");
}

// Composition modes, over a translucent picture in a layer so that destination
// alpha matters.

TEST_F(GoldenGLTest, CompositionModes)
{
    auto* layer = place(new ColorView(root(), "layer", Qt::transparent), 0, 0, kWidth, kHeight);
    layer->setUseLayer(true);
    const QPainter::CompositionMode modes[] = {QPainter::CompositionMode_SourceOver,
                                               QPainter::CompositionMode_DestinationOver,
                                               QPainter::CompositionMode_Source,
                                               QPainter::CompositionMode_SourceIn,
                                               QPainter::CompositionMode_DestinationIn,
                                               QPainter::CompositionMode_SourceOut,
                                               QPainter::CompositionMode_DestinationOut,
                                               QPainter::CompositionMode_SourceAtop,
                                               QPainter::CompositionMode_DestinationAtop,
                                               QPainter::CompositionMode_Xor,
                                               QPainter::CompositionMode_Plus,
                                               QPainter::CompositionMode_Clear};
    paint(layer, QRect(0, 0, kWidth, kHeight), [modes](QPainter& painter) {
        for (int i = 0; i < 12; ++i) {
            const QRect cell(4 + i % 4 * 59, 4 + i / 4 * 52, 54, 48);
            painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
            painter.fillRect(cell.adjusted(0, 0, -18, -16), QColor(30, 90, 220, 200));
            painter.setCompositionMode(modes[i]);
            painter.fillRect(cell.adjusted(18, 16, 0, 0), QColor(240, 120, 20, 160));
        }
    });
    expectScene("composition_modes");
}

// Layers.

TEST_F(GoldenGLTest, TranslucentLayer)
{
    auto* layer = place(new ColorView(root(), "layer", QColor(40, 60, 90)), 20, 20, 200, 120);
    layer->setUseLayer(true);
    place(new ColorView(layer, "a", QColor(240, 200, 40)), 20, 20, 100, 60);
    place(new ColorView(layer, "b", QColor(60, 200, 120)), 80, 50, 100, 60);
    layer->setAlpha(0.6f);
    expectScene("layer_alpha");
}

TEST_F(GoldenGLTest, ScaledAndRotatedLayers)
{
    auto* scaled = place(new ColorView(root(), "scaled", QColor(220, 70, 60)), 20, 30, 80, 80);
    scaled->setUseLayer(true);
    place(new Label(scaled, "text", QStringLiteral("x1.4"), QStringLiteral("FontSize:18; Color:#ffffff")), 10,
          25, 60, 30);
    scaled->setScale(1.4f);
    auto* turned = place(new ColorView(root(), "turned", QColor(60, 110, 220)), 140, 40, 80, 80);
    turned->setUseLayer(true);
    place(new ColorView(turned, "mark", QColor(255, 255, 255)), 10, 10, 20, 20);
    turned->setAngle(30);
    expectScene("layer_scale_rotate");
}

TEST_F(GoldenGLTest, NestedCachedLayers)
{
    auto* outer = place(new ColorView(root(), "outer", QColor(30, 34, 44)), 10, 10, 220, 140);
    outer->setUseLayer(true);
    auto* inner = place(new ColorView(outer, "inner", QColor(70, 80, 100)), 20, 20, 180, 100);
    inner->setUseLayer(true, true);
    place(new Button(inner, "button", QStringLiteral("Inside"), QStringLiteral("Button/Primary")), 20, 25,
          140, 50);
    inner->setAlpha(0.8f);
    expectScene("layer_nested");
}
