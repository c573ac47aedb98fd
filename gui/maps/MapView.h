#pragma once

#include "DisplayView.h"
#include "MapCamera.h"
#include "MapCameraAnimation.h"
#include "MapRouteOverlay.h"
#include "MapTileRenderer.h"
#include "OrbisUIFrameworkExport.h"
#include "native/MapTransform.h"

#include <QSet>
#include <memory>

class GPSInterpolator;

namespace NativeMaps {
class TileCache;
class TileLoader;
class TileSource;
} // namespace NativeMaps

/// The navigation map: tiles under a camera (centre, zoom, heading, tilt), a route
/// line and the car. One finger pans; two fingers pinch to zoom and turn to rotate
/// about their midpoint, and moving up or down side by side tilts. Camera moves can
/// be animated (flyTo). The car follows position fixes smoothed by a
/// GPSInterpolator; in follow mode the camera keeps the car at the focus point,
/// heading up, until a finger moves the map.
class ORBIS_UI_EXPORT MapView : public DisplayView
{
    Q_OBJECT

public:
    static constexpr double kMinZoom = 1.0;
    static constexpr double kMaxZoom = 21.0;
    static constexpr double kMaxTilt = 60.0;

    MapView(DisplayView* parent = nullptr, const char* name = nullptr);
    ~MapView() override;

    /// The view takes both over (either may be null: no tiles, or no disk cache).
    void setTileSource(NativeMaps::TileSource* source, NativeMaps::TileCache* cache = nullptr);
    NativeMaps::TileSource* tileSource() const { return mSource; }
    NativeMaps::TileLoader* tileLoader() const { return mLoader; }
    MapTileRenderer* tileRenderer() const { return mRenderer.get(); }

    /// Camera. Zoom and tilt are kept within their limits, the heading in [0, 360).
    const MapCamera& camera() const { return mCamera; }
    void setCamera(const MapCamera& camera);
    void setCenter(const LocationCoordinate& center);
    void setZoom(double zoom);
    void setRotation(double rotation);
    void setTilt(double tilt);
    void flyTo(const MapCamera& target, double seconds, EaseType ease = InterpolatedValue::EaseInOutCubic);
    bool isAnimating() const { return mAnimation != nullptr; }
    void stopAnimation();
    /// Where the camera's centre appears, as fractions of the view's size.
    void setFocus(const QPointF& fraction);
    const QPointF& focus() const { return mFocus; }

    /// The camera of the current frame.
    NativeMaps::MapTransform transform() const { return transformFor(mCamera); }
    NativeMaps::MapTransform transformFor(const MapCamera& camera) const;
    QPointF viewPointFromLatLng(const LocationCoordinate& coordinate) const;
    LocationCoordinate latLngFromViewPoint(const QPointF& point) const;

    /// The car: the first fix places it, later ones are blended towards.
    void addGpsFix(double latitude, double longitude, double heading);
    bool hasCar() const { return mGps != nullptr; }
    const LocationCoordinate& carPosition() const { return mCarPosition; }
    double carHeading() const { return mCarHeading; }
    void setFollowCar(bool follow);
    bool followsCar() const { return mFollow; }

    MapRouteOverlay& route() { return mRoute; }
    void setRoute(const QVector<LocationCoordinate>& points);

    void draw(QPainter& painter) override;
    void tick() override;
    void resized() override;
    void touched(int touch, QPoint point) override;
    void released(int touch) override;
    void touchCanceled(int touch) override;
    void dragged(int touch, QSize delta) override;
    void pinched(int touch, double scale) override;
    void rotated(int touch, double angle) override;

signals:
    void cameraChanged(MapView* view);
    void followCarChanged(MapView* view, bool follow);

private slots:
    void tileArrived();

private:
    void applyCamera(const MapCamera& camera);
    void userMovedMap();
    void updateCar();
    void paintCar(QPainter& painter, const NativeMaps::MapTransform& transform);
    /// The camera that keeps the geographic point `anchor` at `point` (projected view
    /// pixels) once `camera` is applied.
    MapCamera anchored(const MapCamera& camera, const LocationCoordinate& anchor, const QPointF& point) const;
    QPointF touchPoint(int touch, bool pairCenter) const;
    void followTilt();

    MapCamera mCamera;
    QPointF mFocus = QPointF(0.5, 0.5);
    std::unique_ptr<MapCameraAnimation> mAnimation;
    NativeMaps::TileSource* mSource = nullptr;
    NativeMaps::TileCache* mCache = nullptr;
    NativeMaps::TileLoader* mLoader = nullptr;
    std::unique_ptr<MapTileRenderer> mRenderer;
    MapRouteOverlay mRoute;

    std::unique_ptr<GPSInterpolator> mGps;
    LocationCoordinate mCarPosition;
    double mCarHeading = 0.0;
    int mGpsFixes = 0;
    bool mFollow = false;

    QSet<int> mTouches;
    QPointF mLastPairCenter;
    bool mHasPairCenter = false;
};
