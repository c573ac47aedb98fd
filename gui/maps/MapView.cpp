#include "MapView.h"

#include "GPSInterpolator.h"
#include "native/MapCRS.h"
#include "native/tiles/TileCache.h"
#include "native/tiles/TileLoader.h"
#include "native/tiles/TileSource.h"

#include <GraphicsPaintEngine.h>
#include <QPainter>
#include <cmath>

using NativeMaps::MapCRS;
using NativeMaps::MapTransform;

namespace {
constexpr int kTileSize = 256;

double wrapDegrees(double angle)
{
    angle = std::fmod(angle, 360.0);
    return angle < 0 ? angle + 360.0 : angle;
}

// Views need a projection; the first one installs the web map's if the application did not.
void ensureDefaultCRS()
{
    static NativeMaps::MapCRSEPSG3857 webMercator;
    if (!MapCRS::defaultCRS())
        MapCRS::setDefaultCRS(&webMercator);
}
} // namespace

MapView::MapView(DisplayView* parent, const char* name) : DisplayView(parent, name)
{
    ensureDefaultCRS();
    mCamera.center = LocationCoordinate(0, 0);
    setTouchGesture(DragGesture, true);
    setTouchGesture(PinchGesture, true);
    setTouchGesture(RotateGesture, true);
    mRenderer = std::make_unique<MapTileRenderer>(nullptr);
}

MapView::~MapView()
{
    // The renderer's textures and the loader go before the source they read from.
    mRenderer.reset();
    delete mLoader;
    delete mSource;
    delete mCache;
}

void MapView::setTileSource(NativeMaps::TileSource* source, NativeMaps::TileCache* cache)
{
    mRenderer = std::make_unique<MapTileRenderer>(nullptr);
    delete mLoader;
    mLoader = nullptr;
    if (mSource != source)
        delete mSource;
    if (mCache != cache)
        delete mCache;
    mSource = source;
    mCache = cache;
    if (mSource) {
        mSource->setParent(nullptr);
        if (mCache)
            mCache->setParent(nullptr);
        mLoader = new NativeMaps::TileLoader(mSource, mCache);
        connect(mLoader, &NativeMaps::TileLoader::tileReady, this, &MapView::tileArrived);
        mRenderer = std::make_unique<MapTileRenderer>(mLoader);
        mRenderer->setBackground(mSource->background());
    }
    update();
}

void MapView::tileArrived()
{
    update();
}

MapTransform MapView::transformFor(const MapCamera& camera) const
{
    const int minLevel = mSource ? mSource->minZoom() : 0;
    const int maxLevel = mSource ? mSource->maxZoom() : NativeMaps::TileId::kMaxZoom;
    // The nearest level keeps magnification within [0.71, 1.41); past the source's
    // deepest level its tiles are magnified further.
    const int level = qBound(minLevel, int(std::floor(camera.zoom + 0.5)), maxLevel);
    const double scale = std::pow(2.0, camera.zoom - level);
    const QRect viewport(0, 0, qMax(1, width()), qMax(1, height()));
    const QPointF focus(viewport.width() * mFocus.x(), viewport.height() * mFocus.y());
    MapTransform t(level, scale, camera.rotation, NativeMaps::MapProjection::forViewport(viewport),
                   camera.center, focus, QSize(kTileSize, kTileSize));
    if (camera.tilt == 0.0)
        return t;
    // Tilted, the centre is still drawn at the focus.
    return t.changeTilt(camera.tilt).changeReferenceProjected(camera.center, focus);
}

QPointF MapView::viewPointFromLatLng(const LocationCoordinate& coordinate) const
{
    return transform().projectedViewPixelsFromLatLng(coordinate);
}

LocationCoordinate MapView::latLngFromViewPoint(const QPointF& point) const
{
    return transform().latLngFromProjectedViewPixels(point);
}

void MapView::applyCamera(const MapCamera& camera)
{
    MapCamera c = camera;
    c.zoom = qBound(kMinZoom, c.zoom, kMaxZoom);
    c.tilt = qBound(0.0, c.tilt, kMaxTilt);
    c.rotation = wrapDegrees(c.rotation);
    c.center =
        LocationCoordinate(qBound(-85.0511287798066, c.center.latitude(), 85.0511287798066),
                           c.center.longitude() - 360.0 * std::floor((c.center.longitude() + 180.0) / 360.0));
    if (c == mCamera)
        return;
    mCamera = c;
    update();
    emit cameraChanged(this);
}

void MapView::setCamera(const MapCamera& camera)
{
    stopAnimation();
    applyCamera(camera);
}

void MapView::setCenter(const LocationCoordinate& center)
{
    MapCamera c = mCamera;
    c.center = center;
    setCamera(c);
}

void MapView::setZoom(double zoom)
{
    MapCamera c = mCamera;
    c.zoom = zoom;
    setCamera(c);
}

void MapView::setRotation(double rotation)
{
    MapCamera c = mCamera;
    c.rotation = rotation;
    setCamera(c);
}

void MapView::setTilt(double tilt)
{
    MapCamera c = mCamera;
    c.tilt = tilt;
    setCamera(c);
}

void MapView::flyTo(const MapCamera& target, double seconds, EaseType ease)
{
    if (seconds <= 0) {
        setCamera(target);
        return;
    }
    mAnimation =
        std::make_unique<MapCameraAnimation>(mCamera, target, seconds, ease, qMax(width(), height()));
    update();
}

void MapView::stopAnimation()
{
    mAnimation.reset();
}

void MapView::setFocus(const QPointF& fraction)
{
    mFocus = QPointF(qBound(0.0, fraction.x(), 1.0), qBound(0.0, fraction.y(), 1.0));
    update();
}

void MapView::setRoute(const QVector<LocationCoordinate>& points)
{
    mRoute.setPoints(points);
    update();
}

void MapView::addGpsFix(double latitude, double longitude, double heading)
{
    ++mGpsFixes;
    if (!mGps) {
        mGps = std::make_unique<GPSInterpolator>(latitude, longitude, heading);
        mCarPosition = LocationCoordinate(latitude, longitude);
        mCarHeading = heading;
    } else {
        mGps->addNewSample(latitude, longitude, heading);
    }
    update();
}

void MapView::setFollowCar(bool follow)
{
    if (follow == mFollow)
        return;
    mFollow = follow;
    if (mFollow)
        stopAnimation();
    update();
    emit followCarChanged(this, mFollow);
}

void MapView::userMovedMap()
{
    stopAnimation();
    setFollowCar(false);
}

void MapView::updateCar()
{
    if (!mGps)
        return;
    // One fix is where the car is; blending starts with the second.
    if (mGpsFixes > 1) {
        const GPSInterpolator::Sample sample = mGps->getInterpolatedLocationHeadingSample();
        if (sample.mLocation != mCarPosition || sample.mHeading != mCarHeading) {
            mCarPosition = sample.mLocation;
            mCarHeading = sample.mHeading;
            update();
        }
    }
    if (mFollow && !mAnimation) {
        MapCamera c = mCamera;
        c.center = mCarPosition;
        c.rotation = mCarHeading;
        applyCamera(c);
    }
}

void MapView::tick()
{
    if (mAnimation) {
        const bool finished = mAnimation->isFinished();
        applyCamera(mAnimation->current());
        if (finished)
            mAnimation.reset();
    }
    followTilt();
    updateCar();
    // Keep drawing while tiles are on their way or stand in for one another.
    if (mLoader && (!mLoader->isIdle() || !mRenderer->isComplete()))
        update();
}

void MapView::resized()
{
    DisplayView::resized();
    update();
}

void MapView::draw(QPainter& painter)
{
    if (width() <= 0 || height() <= 0)
        return;
    const MapTransform t = transform();
    const QRect area(0, 0, width(), height());
    mRenderer->prepare(t);
    if (gfx::GraphicsPaintEngine* engine = gfx::GraphicsPaintEngine::of(painter))
        engine->drawWithCustomRenderer(mRenderer.get(), area, area, true);
    else
        mRenderer->paint(painter, area);
    mRoute.paint(painter, t);
    if (mGps)
        paintCar(painter, t);
}

void MapView::paintCar(QPainter& painter, const MapTransform& transform)
{
    const QPointF at = transform.projectedViewPixelsFromLatLng(mCarPosition);
    if (!QRectF(-40, -40, width() + 80, height() + 80).contains(at))
        return;
    // An arrowhead pointing along the heading, as seen on the (rotated) map.
    QPainterPath arrow;
    arrow.moveTo(0, -16);
    arrow.lineTo(11, 12);
    arrow.lineTo(0, 6);
    arrow.lineTo(-11, 12);
    arrow.closeSubpath();
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(at);
    painter.rotate(mCarHeading - transform.rotation());
    painter.setPen(QPen(Qt::white, 3, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(QColor(30, 30, 30));
    painter.drawPath(arrow);
    painter.restore();
}
