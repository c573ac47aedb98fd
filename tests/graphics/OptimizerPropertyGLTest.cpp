#include <DisplayList.h>
#include <GraphicsPaintDevice.h>
#include <ImageSlice.h>
#include <RenderItemBuilder.h>
#include <ShaderCache.h>
#include <TextureCache.h>

#include <QDir>
#include <QPainter>
#include <QPainterPath>
#include <gtest/gtest.h>
#include <random>
#include <support/GLTestContext.h>
#include <support/PaintComparison.h>

using namespace gfx;

namespace {

constexpr int kSize = 128;
// Seeds 1..kScenes run in CI; ORBIS_PROPERTY_SCENES runs more locally.
constexpr int kScenes = 300;

const QPainter::CompositionMode kModes[] = {QPainter::CompositionMode_SourceOver,
                                            QPainter::CompositionMode_DestinationOver,
                                            QPainter::CompositionMode_Clear,
                                            QPainter::CompositionMode_Source,
                                            QPainter::CompositionMode_Destination,
                                            QPainter::CompositionMode_SourceIn,
                                            QPainter::CompositionMode_DestinationIn,
                                            QPainter::CompositionMode_SourceOut,
                                            QPainter::CompositionMode_DestinationOut,
                                            QPainter::CompositionMode_SourceAtop,
                                            QPainter::CompositionMode_DestinationAtop,
                                            QPainter::CompositionMode_Xor,
                                            QPainter::CompositionMode_Plus};

QImage picture(int w, int h, bool alpha, int seed)
{
    QImage image(w, h, alpha ? QImage::Format_ARGB32_Premultiplied : QImage::Format_RGB32);
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x)
            image.setPixel(
                x, y,
                qPremultiply(qRgba((x * 7 + seed * 40) % 256, (y * 5 + seed * 90) % 256, (x + y) * 3 % 256,
                                   alpha ? (x * 3 + y * 2 + seed * 50) % 256 : 255)));
    return image;
}

// Everything a scene draws with, made once so that both renderings share it.
struct Materials
{
    QVector<QImage> pictures{picture(80, 80, true, 1), picture(80, 80, false, 2), picture(64, 64, true, 3),
                             picture(16, 24, true, 4), picture(70, 66, false, 5)};
    ImageSlice slice{QPixmap::fromImage(picture(24, 24, true, 6)), QMargins(6, 8, 6, 4)};
    CustomShaderKey shader = ShaderCache::instance()->registerCustomShader(
        "uniform sampler2D uTexture;\nuniform float uOpacity;\n"
        "void main() { gl_FragColor = texture2D(uTexture, vTexCoord).gbra * uOpacity; }\n");
};

// A random scene: the same seed paints the same commands.
class Scene
{
public:
    Scene(const Materials& materials, quint32 seed) : mMaterials(materials), mRandom(seed) {}

    void paint(QPainter& p, int depth = 0)
    {
        const int count = between(3, depth == 0 ? 12 : 4);
        for (int i = 0; i < count; ++i)
            paintOne(p, depth);
    }
    // What was painted, one command a line, nested lists indented.
    const QStringList& log() const { return mLog; }

private:
    int between(int low, int high) { return std::uniform_int_distribution<int>(low, high)(mRandom); }
    bool chance(int percent) { return between(0, 99) < percent; }
    template <typename T, size_t N> const T& pick(const T (&values)[N])
    {
        return values[between(0, int(N) - 1)];
    }

    QColor color()
    {
        return QColor(between(0, 255), between(0, 255), between(0, 255), chance(60) ? 255 : between(0, 255));
    }
    QRect rect(int minSize = 2)
    {
        const int w = between(minSize, kSize - 10);
        const int h = between(minSize, kSize - 10);
        return QRect(between(-10, kSize - w / 2), between(-10, kSize - h / 2), w, h);
    }
    QRegion holed()
    {
        const QRect outer = rect(12);
        const QRect hole(outer.x() + between(1, outer.width() / 2),
                         outer.y() + between(1, outer.height() / 2), between(1, outer.width() / 2),
                         between(1, outer.height() / 2));
        return QRegion(outer) - QRegion(hole);
    }
    const QImage& image() { return mMaterials.pictures[between(0, mMaterials.pictures.size() - 1)]; }

    static RenderItemBuilder& builderOf(QPainter& p)
    {
        GraphicsPaintEngine* engine = GraphicsPaintEngine::of(p);
        engine->syncPainterState();
        return engine->builder();
    }

    void paintOne(QPainter& p, int depth)
    {
        switch (between(0, 13)) {
        case 0:
        case 1: {
            const QRect r = rect();
            const QColor c = color();
            note(depth, "fillRect %d,%d %dx%d #%08x", r.x(), r.y(), r.width(), r.height(), c.rgba());
            p.fillRect(r, c);
            break;
        }
        case 2: {
            const QRegion region = holed();
            const QColor c = color();
            const QRect b = region.boundingRect();
            note(depth, "region %d,%d %dx%d in %d rects #%08x", b.x(), b.y(), b.width(), b.height(),
                 region.rectCount(), c.rgba());
            builderOf(p).drawColoredRegion(region, c);
            break;
        }
        case 3:
        case 4: {
            const int index = between(0, mMaterials.pictures.size() - 1);
            const QImage& picture = mMaterials.pictures[index];
            const QRect r =
                chance(70) ? QRect(QPoint(between(-10, kSize - 20), between(-10, kSize - 20)), picture.size())
                           : rect();
            note(depth, "drawImage %d at %d,%d %dx%d", index, r.x(), r.y(), r.width(), r.height());
            p.drawImage(r, picture);
            break;
        }
        case 5: {
            const int index = between(0, mMaterials.pictures.size() - 1);
            const QRect r = rect(40);
            const bool blend = chance(70);
            note(depth, "custom shader %d at %d,%d %dx%d blend %d", index, r.x(), r.y(), r.width(),
                 r.height(), blend);
            builderOf(p).drawTexturedRect(r,
                                          TextureCache::instance()->addOrLookup(mMaterials.pictures[index]),
                                          blend, mMaterials.shader);
            break;
        }
        case 6: {
            const QPainter::CompositionMode mode =
                chance(50) ? QPainter::CompositionMode_SourceOver : pick(kModes);
            note(depth, "mode %d", int(mode));
            p.setCompositionMode(mode);
            break;
        }
        case 7: {
            const qreal opacity = chance(50) ? 1.0 : between(1, 9) / 10.0;
            note(depth, "opacity %.1f", opacity);
            p.setOpacity(opacity);
            break;
        }
        case 8: {
            static const char* const kTurned[] = {"fill", "image", "text", "nine-patch"};
            const QPoint centre(between(0, kSize), between(0, kSize));
            const int angle = chance(30) ? 90 * between(1, 3) : between(1, 359);
            const QRect r(-between(5, 40), -between(5, 40), between(10, 80), between(10, 80));
            const int what = between(0, 3);
            note(depth, "rotated %d at %d,%d: %s %d,%d %dx%d", angle, centre.x(), centre.y(), kTurned[what],
                 r.x(), r.y(), r.width(), r.height());
            p.save();
            p.translate(centre);
            p.rotate(angle);
            if (what == 0) {
                p.fillRect(r, color());
            } else if (what == 1) {
                p.drawImage(r, image());
            } else if (what == 2) {
                p.setPen(color());
                p.setFont(QFont(QStringLiteral("DejaVu Sans"), between(6, 20)));
                p.drawText(r.topLeft(), QStringLiteral("Ladestation"));
            } else {
                GraphicsPaintEngine::of(p)->drawImageSlice(r, mMaterials.slice, ImageSlice::All);
            }
            p.restore();
            break;
        }
        case 9:
            if (chance(40)) {
                const QRegion region = holed();
                const QRect b = region.boundingRect();
                note(depth, "clip %d,%d %dx%d in %d rects", b.x(), b.y(), b.width(), b.height(),
                     region.rectCount());
                p.setClipRegion(region);
            } else {
                note(depth, "no clip");
                p.setClipping(false);
            }
            break;
        case 10:
            if (depth < 2)
                paintNested(p, depth);
            break;
        case 11: {
            const QRect r = rect();
            note(depth, "gradient %d,%d %dx%d", r.x(), r.y(), r.width(), r.height());
            p.fillRect(r, gradient(r));
            break;
        }
        case 12: {
            const QPoint at(between(-10, kSize - 20), between(0, kSize));
            const int size = between(6, 30);
            note(depth, "text at %d,%d size %d", at.x(), at.y(), size);
            p.setPen(color());
            p.setFont(QFont(QStringLiteral("DejaVu Sans"), size));
            p.drawText(at, QStringLiteral("Tankstelle 42 km"));
            break;
        }
        case 13:
            paintAntialiased(p, depth);
            break;
        }
    }

    // Equal shapes in a row, whole pixels apart or not, filled, outlined or both:
    // their coverage masks share pages and their draws may merge.
    void paintAntialiased(QPainter& p, int depth)
    {
        const QRectF shape(between(-10, kSize - 20) + between(0, 3) * 0.25, between(-10, kSize - 20) + 0.5,
                           between(4, 50), between(4, 50));
        const int copies = between(1, 4);
        const QPointF step(between(-30, 30) + (chance(50) ? 0.0 : 0.5), between(-30, 30));
        const bool outlined = chance(40);
        const bool filled = !outlined || chance(50);
        const bool graded = filled && chance(25);
        note(depth, "antialiased %.2f,%.1f %.0fx%.0f x%d step %.1f,%.0f fill %d gradient %d pen %d",
             shape.x(), shape.y(), shape.width(), shape.height(), copies, step.x(), step.y(), filled, graded,
             outlined);
        p.save();
        p.setRenderHint(QPainter::Antialiasing);
        p.setPen(outlined ? QPen(color(), between(1, 6)) : QPen(Qt::NoPen));
        if (!filled)
            p.setBrush(Qt::NoBrush);
        else if (graded)
            p.setBrush(gradient(shape.toAlignedRect()));
        else
            p.setBrush(color());
        for (int i = 0; i < copies; ++i) {
            QPainterPath path;
            if (chance(50))
                path.addEllipse(shape.translated(step * i));
            else
                path.addRoundedRect(shape.translated(step * i), 6, 6);
            p.drawPath(path);
        }
        p.restore();
    }

    QBrush gradient(const QRect& r)
    {
        static const QGradient::Spread kSpreads[] = {QGradient::PadSpread, QGradient::RepeatSpread,
                                                     QGradient::ReflectSpread};
        const QPointF a(r.x() + between(0, r.width()), r.y() + between(0, r.height()));
        const QPointF b(r.x() + between(0, r.width()), r.y() + between(0, r.height()));
        QGradient g;
        switch (between(0, 2)) {
        case 0:
            g = QLinearGradient(a, b);
            break;
        case 1:
            g = QRadialGradient(a, between(1, 60), b);
            break;
        default:
            g = QConicalGradient(a, between(0, 359));
            break;
        }
        g.setSpread(pick(kSpreads));
        g.setStops({{0, color()}, {between(1, 9) / 10.0, color()}, {1, color()}});
        return QBrush(g);
    }

    void paintNested(QPainter& p, int depth)
    {
        const QSize size(between(8, 64), between(8, 64));
        const bool substitution = chance(50);
        note(depth, "nested list %dx%d substitution %d {", size.width(), size.height(), substitution);
        GraphicsPaintDevice device(size, QRegion(),
                                   substitution ? GraphicsPaintEngine::AllowSubstitution
                                                : GraphicsPaintEngine::NoOptions);
        {
            QPainter inner(&device);
            paint(inner, depth + 1);
        }
        auto list = device.engine()->createDisplayList();
        list->optimize();
        static const qreal kScales[] = {0.75, 1.0, 1.0, 1.25, 1.5, 2.0, 2.5};
        const QPointF at(between(-10, kSize - 20) + between(0, 3) * 0.25, between(-10, kSize - 20));
        const qreal scale = pick(kScales);
        const qreal opacity = chance(30) ? between(2, 9) / 10.0 : 1.0;
        const QRect source(QPoint(0, 0), size);
        const QRect target = chance(70) ? source : QRect(0, 0, between(4, 80), between(4, 80));
        const bool blend = chance(30);
        note(depth, "} at %.2f,%.0f scale %.2f opacity %.1f into %dx%d blend %d", at.x(), at.y(), scale,
             opacity, target.width(), target.height(), blend);
        p.save();
        p.translate(at);
        p.scale(scale, scale);
        if (opacity < 1)
            p.setOpacity(opacity);
        GraphicsPaintEngine::drawDisplayList(p, list, target, source, blend);
        p.restore();
    }

    template <typename... Args> void note(int depth, const char* format, Args... args)
    {
        mLog << QString(depth * 2, ' ') + QString::asprintf(format, args...);
    }

    const Materials& mMaterials;
    std::mt19937 mRandom;
    QStringList mLog;
};

class OptimizerPropertyGLTest : public ::testing::Test
{
protected:
    void SetUp() override { ASSERT_TRUE(mGL.isValid()); }

    GLTestContext mGL{QSize(kSize, kSize)};
};

TEST_F(OptimizerPropertyGLTest, RandomScenesLookTheSameWithTheOptimizerOnAndOff)
{
    const Materials materials;
    const int scenes = qEnvironmentVariableIsSet("ORBIS_PROPERTY_SCENES")
                           ? qEnvironmentVariableIntValue("ORBIS_PROPERTY_SCENES")
                           : kScenes;
    for (quint32 seed = 1; seed <= quint32(scenes); ++seed) {
        // A transparent background now and then, for the modes that read its alpha.
        const QRgb background = seed % 5 == 0 ? qRgba(0, 0, 0, 0) : qRgba(seed * 37 % 256, 90, 160, 255);
        PaintComparison compare(mGL, background);
        compare.setEngineOptions(seed % 2 ? GraphicsPaintEngine::AllowSubstitution
                                          : GraphicsPaintEngine::NoOptions);
        QStringList log;
        const auto paint = [&](QPainter& p) {
            Scene scene(materials, seed);
            scene.paint(p);
            log = scene.log();
        };
        const QImage on = compare.engine(paint);
        const QImage off = compare.unoptimized(paint);
        const PaintComparison::Difference d =
            PaintComparison::difference(on, off, PaintComparison::kOptimizerTolerance);
        if (d.pixels == 0)
            continue;
        const QString stem = QDir::current().filePath(QStringLiteral("optimizer-seed-%1").arg(seed));
        on.save(stem + "-on.png");
        off.save(stem + "-off.png");
        ADD_FAILURE() << "seed " << seed << ": " << d.pixels << " pixels differ, worst by " << d.worst
                      << " at " << d.worstAt.x() << "," << d.worstAt.y() << ", all within " << d.area.x()
                      << "," << d.area.y() << " " << d.area.width() << "x" << d.area.height()
                      << "; pictures in " << qPrintable(stem) << "-on.png and -off.png; the scene:\n"
                      << qPrintable(log.join('\n'));
    }
}

} // namespace
