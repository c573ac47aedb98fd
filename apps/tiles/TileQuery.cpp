#include "TileQuery.h"

#include "native/MapCRS.h"
#include "native/MapTransform.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegion>
#include <cmath>
#include <memory>

using namespace NativeMaps;

namespace {

constexpr int kMaxZoom = 30;

bool readReal(const QString& text, double& out)
{
    bool ok = false;
    const double v = text.toDouble(&ok);
    if (!ok || !std::isfinite(v))
        return false;
    out = v;
    return true;
}

bool readPair(const QString& text, QChar separator, double& a, double& b)
{
    const QStringList parts = text.split(separator);
    return parts.size() == 2 && readReal(parts[0], a) && readReal(parts[1], b);
}

} // namespace

QString TileQuery::usage()
{
    return QStringLiteral("usage: orbis-tiles --lat DEG --lon DEG [--crs 3857|5179] [--zoom N] [--scale S]\n"
                          "                   [--rotation DEG] [--tilt DEG] [--viewport WxH] [--center X,Y]\n"
                          "                   [--max-tiles N] [--json] [--set key=value ...]\n"
                          "Prints the tiles that cover the view, the centre tile's row and column first\n"
                          "(--center 0,0 keeps scan order). --set overrides a configuration value.\n");
}

bool TileQuery::fail(const QString& message)
{
    mError = message;
    return false;
}

bool TileQuery::parse(const QStringList& arguments)
{
    bool haveLatitude = false;
    bool haveLongitude = false;
    for (int i = 0; i < arguments.size(); ++i) {
        const QString& arg = arguments[i];
        if (arg == "--json") {
            mJson = true;
            continue;
        }
        if (arg == "--help" || arg == "-h") {
            mHelp = true;
            continue;
        }
        if (i + 1 >= arguments.size())
            return fail(arg.startsWith("--") ? QString("%1 needs a value").arg(arg)
                                             : QString("Unexpected argument %1").arg(arg));
        const QString value = arguments[++i];
        double real = 0.0;
        double other = 0.0;
        if (arg == "--set") {
            if (!value.contains('='))
                return fail(QString("Bad override %1 (key=value)").arg(value));
            mConfigOverrides.append(value);
        } else if (arg == "--crs") {
            if (value != "3857" && value != "5179")
                return fail(QString("Unknown CRS %1 (3857 or 5179)").arg(value));
            mCrs = value.toInt();
        } else if (arg == "--lat") {
            if (!readReal(value, mLatitude) || std::fabs(mLatitude) > 90.0)
                return fail(QString("Bad latitude %1").arg(value));
            haveLatitude = true;
        } else if (arg == "--lon") {
            if (!readReal(value, mLongitude) || std::fabs(mLongitude) > 180.0)
                return fail(QString("Bad longitude %1").arg(value));
            haveLongitude = true;
        } else if (arg == "--zoom") {
            bool ok = false;
            mZoom = value.toInt(&ok);
            if (!ok || mZoom < 0 || mZoom > kMaxZoom)
                return fail(QString("Bad zoom %1 (0 to %2)").arg(value).arg(kMaxZoom));
        } else if (arg == "--scale") {
            if (!readReal(value, mScale) || mScale <= 0.0)
                return fail(QString("Bad scale %1").arg(value));
        } else if (arg == "--rotation") {
            if (!readReal(value, mRotation))
                return fail(QString("Bad rotation %1").arg(value));
        } else if (arg == "--tilt") {
            if (!readReal(value, mTilt) || mTilt < 0.0 || mTilt >= 90.0)
                return fail(QString("Bad tilt %1 (0 to below 90)").arg(value));
        } else if (arg == "--viewport") {
            if (!readPair(value, 'x', real, other) || real < 1 || other < 1 || real != std::floor(real) ||
                other != std::floor(other))
                return fail(QString("Bad viewport %1 (WxH)").arg(value));
            mViewport = QSize(int(real), int(other));
        } else if (arg == "--center") {
            if (!readPair(value, ',', real, other))
                return fail(QString("Bad center %1 (X,Y)").arg(value));
            mCenter = QPointF(real, other);
            mCenterGiven = true;
        } else if (arg == "--max-tiles") {
            bool ok = false;
            mMaxTiles = value.toInt(&ok);
            if (!ok || mMaxTiles < 0)
                return fail(QString("Bad tile limit %1").arg(value));
        } else {
            return fail(QString("Unknown option %1").arg(arg));
        }
    }
    if (!mHelp && (!haveLatitude || !haveLongitude))
        return fail(QStringLiteral("--lat and --lon are required"));
    if (!mCenterGiven)
        mCenter = QPointF(mViewport.width() / 2.0, mViewport.height() / 2.0);
    return true;
}

QVector<QPoint> TileQuery::run(QRectF* viewRect) const
{
    std::unique_ptr<MapCRS> crs;
    if (mCrs == 5179)
        crs.reset(new MapCRSEPSG5179());
    else
        crs.reset(new MapCRSEPSG3857());
    MapCRS* const previous = MapCRS::defaultCRS();
    MapCRS::setDefaultCRS(crs.get());

    const QRect viewport(QPoint(0, 0), mViewport);
    const MapTransform camera =
        MapTransform(mZoom, mScale, mRotation, MapProjection::forViewport(viewport),
                     LocationCoordinate(mLatitude, mLongitude), QRectF(viewport).center(), QSize(256, 256))
            .changeTilt(mTilt);
    QRectF rect;
    const QVector<QPoint> tiles = camera.tilePoints(mMaxTiles, mCenter, QRegion(), rect);

    MapCRS::setDefaultCRS(previous);
    if (viewRect)
        *viewRect = rect;
    return tiles;
}

QString TileQuery::format(const QVector<QPoint>& tiles, const QRectF& viewRect) const
{
    if (!mJson) {
        QString out;
        for (const QPoint& t : tiles)
            out += QString("%1/%2/%3\n").arg(mZoom).arg(t.x()).arg(t.y());
        return out;
    }
    QJsonArray list;
    for (const QPoint& t : tiles)
        list.append(QJsonArray{t.x(), t.y()});
    const QJsonObject root{
        {"crs", QString("EPSG:%1").arg(mCrs)},
        {"zoom", mZoom},
        {"viewRect", QJsonArray{viewRect.x(), viewRect.y(), viewRect.width(), viewRect.height()}},
        {"tiles", list},
    };
    return QString::fromUtf8(QJsonDocument(root).toJson(QJsonDocument::Compact)) + '\n';
}
