#include "DisplayImage.h"

#include <GraphicsPaintEngine.h>
#include <ImageSlice.h>
#include <Logger.h>
#include <QDir>
#include <QFileInfo>
#include <QHash>
#include <QImageReader>
#include <QPainter>
#include <QSet>
#include <StorageUtils.h>
#include <TextureCache.h>

static const char* const kLogSource = "../../../gui/DisplayImage";

namespace {
int gSourceCount = 0;

bool formatHasAlpha(QImage::Format format)
{
    switch (format) {
    case QImage::Format_RGB32:
    case QImage::Format_RGB888:
    case QImage::Format_RGB16:
    case QImage::Format_Grayscale8:
    case QImage::Format_Grayscale16:
    case QImage::Format_RGBX8888:
        return false;
    default:
        return true;
    }
}
} // namespace

class DisplayImage::Source : public QSharedData
{
public:
    // Files by the path their name points at, so that a change of assets folder
    // finds the new folder's pictures.
    static QHash<QString, Source*>& files()
    {
        static QHash<QString, Source*> registry;
        return registry;
    }

    Source() { ++gSourceCount; }
    ~Source()
    {
        if (!key.isEmpty())
            files().remove(key);
        --gSourceCount;
    }
    Source(const Source&) = delete;
    Source& operator=(const Source&) = delete;

    QString key;
    QString path;
    QSize size;
    bool alpha = true;
    bool compressed = false;
    gfx::TextureKey texture;
    // Decoded on first use only: drawing through the engine uploads from the file.
    mutable QImage pixels;
    mutable bool decoded = false;
    // -1 until the pixels have been looked at.
    mutable qint8 monochrome = -1;
};

DisplayImage::DisplayImage() = default;
DisplayImage::DisplayImage(const DisplayImage& other) = default;
DisplayImage& DisplayImage::operator=(const DisplayImage& other) = default;
DisplayImage::~DisplayImage() = default;

namespace {
QString resolve(const QString& candidate)
{
    if (QFileInfo(candidate).isFile())
        return candidate;
    if (QFileInfo(candidate).suffix().isEmpty()) {
        for (const char* suffix : {".png", ".ktx"}) {
            const QString withSuffix = candidate + QLatin1String(suffix);
            if (QFileInfo(withSuffix).isFile())
                return withSuffix;
        }
    }
    return QString();
}

// Each bad file is named once: a thousand views asking for it give one line.
bool firstReport(const QString& path)
{
    static QSet<QString> reported;
    if (reported.contains(path))
        return false;
    reported.insert(path);
    return true;
}
} // namespace

DisplayImage::DisplayImage(const QString& name)
{
    if (name.isEmpty())
        return;
    const QString key = QDir::isAbsolutePath(name) ? name : StorageUtils::assetPath(name);
    if (Source* existing = Source::files().value(key)) {
        mSource = existing;
        return;
    }
    const QString path = resolve(key);
    if (path.isEmpty()) {
        if (firstReport(key))
            ORBIS_FAIL(QStringLiteral("Image file not found: %1").arg(key));
        return;
    }
    QExplicitlySharedDataPointer<Source> source(new Source);
    source->path = path;
    source->compressed = path.endsWith(QLatin1String(".ktx"), Qt::CaseInsensitive);
    source->texture = gfx::TextureCache::instance()->addOrLookup(path);
    if (source->compressed) {
        source->size = source->texture.size();
    } else {
        QImageReader reader(path);
        source->size = reader.size();
        source->alpha = formatHasAlpha(reader.imageFormat());
    }
    if (source->size.isEmpty()) {
        if (firstReport(key))
            ORBIS_FAIL(QStringLiteral("Image file could not be read: %1").arg(path));
        return;
    }
    source->key = key;
    Source::files().insert(key, source.data());
    mSource = source;
}

DisplayImage::DisplayImage(const QImage& pixels)
{
    if (pixels.isNull())
        return;
    mSource = new Source;
    mSource->pixels = pixels.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    mSource->decoded = true;
    mSource->size = pixels.size();
    mSource->alpha = pixels.hasAlphaChannel();
    mSource->texture = gfx::TextureCache::instance()->addOrLookup(mSource->pixels);
}

DisplayImage DisplayImage::fromStyle(const Style& style, Style::StyleAttribute attribute)
{
    QString name;
    if (!style.stringValue(attribute, name))
        return DisplayImage();
    DisplayImage image(name);
    if (image.isNull())
        return image;
    if (style.isDefined(Style::Cuts)) {
        const QList<int> cuts = style.intListValue(Style::Cuts);
        switch (cuts.size()) {
        case 1:
            image.setCuts(QMargins(cuts[0], cuts[0], cuts[0], cuts[0]));
            break;
        case 2:
            image.setCuts(QMargins(cuts[0], cuts[1], cuts[0], cuts[1]));
            break;
        case 4:
            image.setCuts(QMargins(cuts[0], cuts[1], cuts[2], cuts[3]));
            break;
        default:
            ORBIS_FAIL(QStringLiteral("Invalid cuts count: %1").arg(cuts.size()));
        }
    }
    bool flag = false;
    if (style.boolValue(Style::TileImage, flag) && flag)
        image.setFill(Tile);
    else if (style.boolValue(Style::ScaleImage, flag) && !flag)
        image.setFill(Center);
    return image;
}

bool DisplayImage::isNull() const
{
    return !mSource;
}

QString DisplayImage::fileName() const
{
    return mSource ? mSource->path : QString();
}

QSize DisplayImage::size() const
{
    return mSource ? mSource->size : QSize();
}

bool DisplayImage::hasAlpha() const
{
    return mSource && mSource->alpha;
}

gfx::TextureKey DisplayImage::texture() const
{
    return mSource ? mSource->texture : gfx::TextureKey();
}

QImage DisplayImage::image() const
{
    if (!mSource)
        return QImage();
    if (!mSource->decoded) {
        mSource->decoded = true;
        if (!mSource->compressed)
            mSource->pixels = QImage(mSource->path).convertToFormat(QImage::Format_ARGB32_Premultiplied);
    }
    return mSource->pixels;
}

int DisplayImage::alphaAt(const QPoint& pixel) const
{
    const QImage pixels = image();
    if (!pixels.valid(pixel))
        return 0;
    return qAlpha(pixels.pixel(pixel));
}

bool DisplayImage::isMonochrome() const
{
    if (!mSource)
        return false;
    if (mSource->monochrome < 0) {
        const QImage pixels = image().convertToFormat(QImage::Format_ARGB32);
        bool one = !pixels.isNull();
        QRgb ink = 0;
        bool seen = false;
        for (int y = 0; one && y < pixels.height(); ++y) {
            const QRgb* row = reinterpret_cast<const QRgb*>(pixels.constScanLine(y));
            for (int x = 0; one && x < pixels.width(); ++x) {
                // Faint edge pixels carry too little colour to tell.
                if (qAlpha(row[x]) < 128)
                    continue;
                // Premultiplied edges come back with rounded channels.
                const QRgb colour = row[x];
                one = !seen ||
                      (qAbs(qRed(colour) - qRed(ink)) <= 8 && qAbs(qGreen(colour) - qGreen(ink)) <= 8 &&
                       qAbs(qBlue(colour) - qBlue(ink)) <= 8);
                if (!seen)
                    ink = colour;
                seen = true;
            }
        }
        mSource->monochrome = one && seen ? 1 : 0;
    }
    return mSource->monochrome == 1;
}

void DisplayImage::setCuts(const QMargins& cuts)
{
    mCuts =
        QMargins(qMax(0, cuts.left()), qMax(0, cuts.top()), qMax(0, cuts.right()), qMax(0, cuts.bottom()));
}

QRect DisplayImage::placement(const QRect& target) const
{
    if (mFill != Center)
        return target;
    const QSize own = size();
    return QRect(target.left() + (target.width() - own.width()) / 2,
                 target.top() + (target.height() - own.height()) / 2, own.width(), own.height());
}

void DisplayImage::draw(QPainter& painter, const QRect& target) const
{
    if (!mSource || target.isEmpty())
        return;
    if (gfx::GraphicsPaintEngine::of(painter))
        drawWithEngine(painter, target);
    else
        drawWithPainter(painter, target);
}

void DisplayImage::drawWithEngine(QPainter& painter, const QRect& target) const
{
    gfx::GraphicsPaintEngine* engine = gfx::GraphicsPaintEngine::of(painter);
    const QSize own = size();
    const bool alpha = hasAlpha();
    switch (mFill) {
    case Stretch:
        engine->drawImageSlice(target, gfx::ImageSlice(mSource->texture, own, mCuts, alpha),
                               gfx::ImageSlice::All);
        return;
    case Center:
        engine->drawImageSlice(placement(target), gfx::ImageSlice(mSource->texture, own, QMargins(), alpha),
                               gfx::ImageSlice::All);
        return;
    case Tile: {
        const gfx::ImageSlice whole(mSource->texture, own, QMargins(), alpha);
        painter.save();
        painter.setClipRect(target, Qt::IntersectClip);
        for (int y = target.top(); y <= target.bottom(); y += own.height()) {
            for (int x = target.left(); x <= target.right(); x += own.width())
                engine->drawImageSlice(QRect(QPoint(x, y), own), whole, gfx::ImageSlice::All);
        }
        painter.restore();
        return;
    }
    }
}

void DisplayImage::drawWithPainter(QPainter& painter, const QRect& target) const
{
    const QImage pixels = image();
    if (pixels.isNull())
        return;
    painter.save();
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    switch (mFill) {
    case Stretch: {
        // The same cut geometry as the engine's nine-patch, so both paint alike.
        const gfx::ImageSlice slice(gfx::TextureKey(), pixels.size(), mCuts, hasAlpha());
        for (int bit = gfx::ImageSlice::TopLeft; bit <= gfx::ImageSlice::BottomRight; bit <<= 1) {
            const auto part = gfx::ImageSlice::Slice(bit);
            const QRect to = slice.target(part, target);
            const QRect from = slice.source(part);
            if (!to.isEmpty() && !from.isEmpty())
                painter.drawImage(QRectF(to), pixels, QRectF(from));
        }
        break;
    }
    case Center:
        painter.drawImage(placement(target).topLeft(), pixels);
        break;
    case Tile:
        painter.setClipRect(target, Qt::IntersectClip);
        for (int y = target.top(); y <= target.bottom(); y += pixels.height()) {
            for (int x = target.left(); x <= target.right(); x += pixels.width())
                painter.drawImage(QPoint(x, y), pixels);
        }
        break;
    }
    painter.restore();
}

bool DisplayImage::operator==(const DisplayImage& other) const
{
    if (mCuts != other.mCuts || mFill != other.mFill)
        return false;
    if (mSource == other.mSource)
        return true;
    // Two values made from the same pixels are the same picture.
    return mSource && other.mSource && mSource->path.isEmpty() && other.mSource->path.isEmpty() &&
           mSource->pixels.cacheKey() == other.mSource->pixels.cacheKey();
}

int DisplayImage::sourceCount()
{
    return gSourceCount;
}
