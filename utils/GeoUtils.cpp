#include "GeoUtils.h"

#include "MathUtils.h"

#include <array>
#include <cmath>

namespace GeoUtils {

TPoint<double> projectToSphericalMercator(const LocationCoordinate& coordinate)
{
    const double lat = MathUtils::clamp(coordinate.latitude(), -kSphericalMercatorMaxLatitude,
                                        kSphericalMercatorMaxLatitude);
    const double phi = MathUtils::degreesToRadians(lat);
    const double x = kSphericalMercatorRadius * MathUtils::degreesToRadians(coordinate.longitude());
    const double y = kSphericalMercatorRadius * std::log(std::tan(M_PI / 4.0 + phi / 2.0));
    return TPoint<double>(x, y);
}

LocationCoordinate unprojectFromSphericalMercator(const TPoint<double>& point)
{
    const double lon = MathUtils::radiansToDegrees(point.x / kSphericalMercatorRadius);
    const double lat = MathUtils::radiansToDegrees(
        2.0 * std::atan(std::exp(point.y / kSphericalMercatorRadius)) - M_PI / 2.0);
    return LocationCoordinate(lat, lon);
}

namespace {

// Transverse Mercator by Krueger's series to sixth order in the third flattening
// n, which is accurate to well under a millimetre within thousands of kilometres
// of the central meridian.
class TransverseMercator
{
public:
    TransverseMercator(double a, double inverseFlattening, double lat0, double lon0, double k0,
                       double falseEasting, double falseNorthing)
        : mLon0(MathUtils::degreesToRadians(lon0)), mK0(k0), mFalseEasting(falseEasting),
          mFalseNorthing(falseNorthing)
    {
        const double f = 1.0 / inverseFlattening;
        mN = f / (2.0 - f);
        const double n = mN, n2 = n * n, n3 = n2 * n, n4 = n3 * n, n5 = n4 * n, n6 = n5 * n;
        mA = a / (1.0 + n) * (1.0 + n2 / 4.0 + n4 / 64.0 + n6 / 256.0);
        mAlpha = {n / 2.0 - 2.0 * n2 / 3.0 + 5.0 * n3 / 16.0 + 41.0 * n4 / 180.0 - 127.0 * n5 / 288.0 +
                      7891.0 * n6 / 37800.0,
                  13.0 * n2 / 48.0 - 3.0 * n3 / 5.0 + 557.0 * n4 / 1440.0 + 281.0 * n5 / 630.0 -
                      1983433.0 * n6 / 1935360.0,
                  61.0 * n3 / 240.0 - 103.0 * n4 / 140.0 + 15061.0 * n5 / 26880.0 + 167603.0 * n6 / 181440.0,
                  49561.0 * n4 / 161280.0 - 179.0 * n5 / 168.0 + 6601661.0 * n6 / 7257600.0,
                  34729.0 * n5 / 80640.0 - 3418889.0 * n6 / 1995840.0,
                  212378941.0 * n6 / 319334400.0};
        mBeta = {n / 2.0 - 2.0 * n2 / 3.0 + 37.0 * n3 / 96.0 - n4 / 360.0 - 81.0 * n5 / 512.0 +
                     96199.0 * n6 / 604800.0,
                 n2 / 48.0 + n3 / 15.0 - 437.0 * n4 / 1440.0 + 46.0 * n5 / 105.0 - 1118711.0 * n6 / 3870720.0,
                 17.0 * n3 / 480.0 - 37.0 * n4 / 840.0 - 209.0 * n5 / 4480.0 + 5569.0 * n6 / 90720.0,
                 4397.0 * n4 / 161280.0 - 11.0 * n5 / 504.0 - 830251.0 * n6 / 7257600.0,
                 4583.0 * n5 / 161280.0 - 108847.0 * n6 / 3991680.0,
                 20648693.0 * n6 / 638668800.0};
        mDelta = {
            2.0 * n - 2.0 * n2 / 3.0 - 2.0 * n3 + 116.0 * n4 / 45.0 + 26.0 * n5 / 45.0 - 2854.0 * n6 / 675.0,
            7.0 * n2 / 3.0 - 8.0 * n3 / 5.0 - 227.0 * n4 / 45.0 + 2704.0 * n5 / 315.0 + 2323.0 * n6 / 945.0,
            56.0 * n3 / 15.0 - 136.0 * n4 / 35.0 - 1262.0 * n5 / 105.0 + 73814.0 * n6 / 2835.0,
            4279.0 * n4 / 630.0 - 332.0 * n5 / 35.0 - 399572.0 * n6 / 14175.0,
            4174.0 * n5 / 315.0 - 144838.0 * n6 / 6237.0,
            601676.0 * n6 / 22275.0};
        mXi0 = forwardXiEta(MathUtils::degreesToRadians(lat0), 0.0).x;
    }

    TPoint<double> forward(double latDeg, double lonDeg) const
    {
        const double dLon = MathUtils::degreesToRadians(lonDeg) - mLon0;
        const TPoint<double> xe = forwardXiEta(MathUtils::degreesToRadians(latDeg), dLon);
        return TPoint<double>(mFalseEasting + mK0 * mA * xe.y, mFalseNorthing + mK0 * mA * (xe.x - mXi0));
    }

    LocationCoordinate inverse(double easting, double northing) const
    {
        const double xi = (northing - mFalseNorthing) / (mK0 * mA) + mXi0;
        const double eta = (easting - mFalseEasting) / (mK0 * mA);
        double xiP = xi, etaP = eta;
        for (int j = 1; j <= 6; ++j) {
            xiP -= mBeta[j - 1] * std::sin(2 * j * xi) * std::cosh(2 * j * eta);
            etaP -= mBeta[j - 1] * std::cos(2 * j * xi) * std::sinh(2 * j * eta);
        }
        const double chi = std::asin(std::sin(xiP) / std::cosh(etaP));
        double phi = chi;
        for (int j = 1; j <= 6; ++j)
            phi += mDelta[j - 1] * std::sin(2 * j * chi);
        const double lambda = mLon0 + std::atan2(std::sinh(etaP), std::cos(xiP));
        return LocationCoordinate(MathUtils::radiansToDegrees(phi), MathUtils::radiansToDegrees(lambda));
    }

private:
    // (xi, eta) on the sphere of the rectifying radius, before scaling.
    TPoint<double> forwardXiEta(double phi, double dLon) const
    {
        const double c = 2.0 * std::sqrt(mN) / (1.0 + mN);
        const double t = std::sinh(std::atanh(std::sin(phi)) - c * std::atanh(c * std::sin(phi)));
        const double xiP = std::atan2(t, std::cos(dLon));
        const double etaP = std::atanh(std::sin(dLon) / std::sqrt(1.0 + t * t));
        double xi = xiP, eta = etaP;
        for (int j = 1; j <= 6; ++j) {
            xi += mAlpha[j - 1] * std::sin(2 * j * xiP) * std::cosh(2 * j * etaP);
            eta += mAlpha[j - 1] * std::cos(2 * j * xiP) * std::sinh(2 * j * etaP);
        }
        return TPoint<double>(xi, eta);
    }

    double mLon0;
    double mK0;
    double mFalseEasting;
    double mFalseNorthing;
    double mN = 0;
    double mA = 0;
    double mXi0 = 0;
    std::array<double, 6> mAlpha{};
    std::array<double, 6> mBeta{};
    std::array<double, 6> mDelta{};
};

const TransverseMercator& utmk()
{
    static const TransverseMercator tm(6378137.0, 298.257222101, 38.0, 127.5, 0.9996, 1000000.0, 2000000.0);
    return tm;
}

} // namespace

TPoint<double> WGStoUTMK(const LocationCoordinate& coordinate)
{
    return utmk().forward(coordinate.latitude(), coordinate.longitude());
}

LocationCoordinate UTMKtoWGS(const TPoint<double>& point)
{
    return utmk().inverse(point.x, point.y);
}

double distanceBetweenTwoLocations(const LocationCoordinate& a, const LocationCoordinate& b)
{
    constexpr double kMeanEarthRadius = 6371008.8;
    const double phi1 = MathUtils::degreesToRadians(a.latitude());
    const double phi2 = MathUtils::degreesToRadians(b.latitude());
    const double dPhi = phi2 - phi1;
    const double dLambda = MathUtils::degreesToRadians(b.longitude() - a.longitude());
    const double h = std::sin(dPhi / 2) * std::sin(dPhi / 2) +
                     std::cos(phi1) * std::cos(phi2) * std::sin(dLambda / 2) * std::sin(dLambda / 2);
    return 2.0 * kMeanEarthRadius * std::asin(std::min(1.0, std::sqrt(h)));
}

} // namespace GeoUtils
