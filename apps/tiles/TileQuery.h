#pragma once

#include <QPoint>
#include <QPointF>
#include <QRectF>
#include <QSize>
#include <QString>
#include <QStringList>
#include <QVector>

// A camera given on the command line and the tiles that cover its view, in the
// order the map engine loads them.
class TileQuery
{
public:
    static QString usage();

    // Reads the arguments (without the program name). On failure error() says why.
    bool parse(const QStringList& arguments);
    const QString& error() const { return mError; }

    // Enumerates the tiles with the chosen CRS installed as the default for the
    // duration. Empty when the view needs more than the tile limit.
    QVector<QPoint> run(QRectF* viewRect = nullptr) const;
    // One "zoom/x/y" line per tile, or a single JSON object.
    QString format(const QVector<QPoint>& tiles, const QRectF& viewRect) const;

    bool helpRequested() const { return mHelp; }
    bool json() const { return mJson; }
    // "key=value" configuration overrides given with --set.
    const QStringList& configOverrides() const { return mConfigOverrides; }

private:
    bool fail(const QString& message);

    int mCrs = 3857;
    double mLatitude = 0.0;
    double mLongitude = 0.0;
    int mZoom = 15;
    double mScale = 1.0;
    double mRotation = 0.0;
    double mTilt = 0.0;
    QSize mViewport{1920, 1200};
    QPointF mCenter;
    bool mCenterGiven = false;
    int mMaxTiles = 512;
    bool mJson = false;
    bool mHelp = false;
    QStringList mConfigOverrides;
    QString mError;
};
