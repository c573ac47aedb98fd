#pragma once

#include "OrbisUIFrameworkExport.h"

#include <QExplicitlySharedDataPointer>
#include <QImage>
#include <QMargins>
#include <QRect>
#include <QString>
#include <Style.h>
#include <TextureKey.h>

class QPainter;

/// A picture as views use it: backgrounds, layer masks, touch maps and the looks of
/// controls. It is loaded by name from the assets folder or made from pixels, and
/// carries how it fills a rectangle: stretched (through nine-patch cuts when it has
/// them), tiled, or centred at its own size.
///
/// Every DisplayImage of one file shares one source: one texture key and, once
/// something asks for them on the processor (a touch map, a painter without the
/// framework's engine), one copy of the decoded pixels. A thousand views with the
/// same background hold a pointer each, not a picture each. GUI thread only.
class ORBIS_UI_EXPORT DisplayImage
{
public:
    enum Fill : quint8
    {
        Stretch, ///< over the whole rectangle; the cuts keep the corners unscaled
        Tile,    ///< repeated at its own size from the rectangle's top left
        Center   ///< at its own size, centred
    };

    DisplayImage();
    /// A file in the assets folder, or an absolute path. A name without a suffix is
    /// looked for as ".png", then ".ktx". A file that is missing or unreadable is
    /// reported once per name and gives a null image.
    explicit DisplayImage(const QString& name);
    /// Pixels made by the program; copies of the value share them.
    explicit DisplayImage(const QImage& pixels);
    /// The image a style names under `attribute`, with the style's Cuts (one value for
    /// every side, two for left and right then top and bottom, or left, top, right,
    /// bottom) and fill (TileImage:1 tiles, ScaleImage:0 centres). Null when the
    /// style names none.
    static DisplayImage fromStyle(const Style& style, Style::StyleAttribute attribute);
    DisplayImage(const DisplayImage& other);
    DisplayImage& operator=(const DisplayImage& other);
    ~DisplayImage();

    bool isNull() const;
    /// The resolved path (empty for pixels made by the program).
    QString fileName() const;
    QSize size() const;
    int width() const { return size().width(); }
    int height() const { return size().height(); }
    bool hasAlpha() const;
    gfx::TextureKey texture() const;
    /// The decoded pixels, premultiplied; decoded on first use and shared. Null for
    /// a compressed (KTX) file, which only the GPU can read.
    QImage image() const;
    /// The alpha of a picture pixel; 0 outside the picture.
    int alphaAt(const QPoint& pixel) const;
    /// Whether every visible pixel has one colour (a symbol drawn in one ink), so
    /// that the picture can be recoloured; read once from the decoded pixels.
    bool isMonochrome() const;

    /// Nine-patch cut lines as distances from the left, top, right and bottom edges.
    const QMargins& cuts() const { return mCuts; }
    void setCuts(const QMargins& cuts);
    Fill fill() const { return mFill; }
    void setFill(Fill fill) { mFill = fill; }

    /// Draws into `target` by the fill, through the framework's engine when the
    /// painter is on it (as textures) and as decoded pixels otherwise.
    void draw(QPainter& painter, const QRect& target) const;
    /// Where the picture lands for `target`: the target itself, or the centred rect.
    QRect placement(const QRect& target) const;

    bool operator==(const DisplayImage& other) const;
    bool operator!=(const DisplayImage& other) const { return !(*this == other); }

    /// Sources alive in the process (files and program pixels).
    static int sourceCount();

private:
    class Source;

    void drawWithEngine(QPainter& painter, const QRect& target) const;
    void drawWithPainter(QPainter& painter, const QRect& target) const;

    QExplicitlySharedDataPointer<Source> mSource;
    QMargins mCuts;
    Fill mFill = Stretch;
};
