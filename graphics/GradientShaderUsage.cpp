#include "GradientShaderUsage.h"

#include "GradientRamp.h"
#include "RenderState.h"
#include "ShaderProgram.h"

#include <QtMath>

namespace gfx {

namespace {
// How the shader takes positions beyond the ends: 0 pads, 1 repeats, 2 reflects.
float spreadOf(QGradient::Spread spread)
{
    switch (spread) {
    case QGradient::RepeatSpread:
        return 1;
    case QGradient::ReflectSpread:
        return 2;
    default:
        return 0;
    }
}

ShaderCache::Builtin builtinFor(QGradient::Type type, bool masked)
{
    switch (type) {
    case QGradient::RadialGradient:
        return masked ? ShaderCache::kMaskedRadialGradient : ShaderCache::kRadialGradient;
    case QGradient::ConicalGradient:
        return masked ? ShaderCache::kMaskedConicalGradient : ShaderCache::kConicalGradient;
    default:
        return masked ? ShaderCache::kMaskedLinearGradient : ShaderCache::kLinearGradient;
    }
}

QVector<TextureKey> texturesFor(const QGradient& gradient, const TextureKey& mask)
{
    const TextureKey ramp = GradientRamp::key(gradient);
    return mask.isNull() ? QVector<TextureKey>{ramp} : QVector<TextureKey>{ramp, mask};
}
} // namespace

GradientShaderUsage::GradientShaderUsage(const QGradient& gradient, const QTransform& toItem,
                                         const TextureKey& mask)
    : ShaderUsage(builtinFor(gradient.type(), !mask.isNull()), texturesFor(gradient, mask))
{
    // A transform that cannot be undone leaves the gradient in place, as in the
    // raster engine.
    mToGradient = QMatrix4x4(toItem.inverted());
    mSpread = spreadOf(gradient.spread());
    switch (gradient.type()) {
    case QGradient::LinearGradient: {
        const auto& linear = static_cast<const QLinearGradient&>(gradient);
        const QPointF d = linear.finalStop() - linear.start();
        const qreal lengthSquared = QPointF::dotProduct(d, d);
        const QPointF direction = lengthSquared > 0 ? d / lengthSquared : QPointF();
        mGradient = QVector4D(float(linear.start().x()), float(linear.start().y()), float(direction.x()),
                              float(direction.y()));
        break;
    }
    case QGradient::RadialGradient:
        setRadial(static_cast<const QRadialGradient&>(gradient));
        break;
    case QGradient::ConicalGradient: {
        const auto& conical = static_cast<const QConicalGradient&>(gradient);
        mGradient = QVector4D(float(conical.center().x()), float(conical.center().y()),
                              float(qDegreesToRadians(conical.angle())), 0);
        mSpread = spreadOf(QGradient::RepeatSpread);
        break;
    }
    default:
        break;
    }
    mOpaque = mCoversAll && GradientRamp::isOpaque(gradient.stops());
}

void GradientShaderUsage::setRadial(const QRadialGradient& radial)
{
    // The colour at a point is that of the largest circle through it, between the
    // focal circle and the outer one.
    const QPointF focal = radial.focalPoint();
    const QPointF d = radial.center() - focal;
    const qreal dr = radial.radius() - radial.focalRadius();
    const qreal a = dr * dr - QPointF::dotProduct(d, d);
    // Outside the cone of the two circles (a focal circle, or a focal point
    // outside the outer circle) nothing is drawn.
    const bool extended = !qFuzzyIsNull(radial.focalRadius()) || a <= 0;
    mCoversAll = !extended;
    mGradient = QVector4D(float(focal.x()), float(focal.y()), float(d.x()), float(d.y()));
    mRadial = QVector4D(float(dr), float(radial.focalRadius()), float(a), extended ? 1 : 0);
}

bool GradientShaderUsage::equals(const ShaderUsage* other) const
{
    if (!ShaderUsage::equals(other))
        return false;
    const auto* o = static_cast<const GradientShaderUsage*>(other);
    return mSpread == o->mSpread && mGradient == o->mGradient && mRadial == o->mRadial &&
           mToGradient == o->mToGradient && mOpaque == o->mOpaque;
}

bool GradientShaderUsage::bind(const RenderState& state)
{
    if (!ShaderUsage::bind(state))
        return false;
    // GL window coordinates to the item's, then into the gradient's.
    QMatrix4x4 itemToWindow;
    const QRect window = state.toWindow(state.viewport);
    itemToWindow.translate(window.x(), window.y());
    itemToWindow.scale(window.width() / 2.0f, window.height() / 2.0f);
    itemToWindow.translate(1, 1);
    itemToWindow *= state.projection() * state.matrix;
    if (!isIdentity())
        itemToWindow *= matrix();
    ShaderProgram* program = shader(state);
    program->setUniform("uWindowToGradient", mToGradient * itemToWindow.inverted());
    program->setUniform("uGradient", mGradient);
    program->setUniform("uRadial", mRadial);
    program->setUniform("uSpread", mSpread);
    return true;
}

bool GradientShaderUsage::needsBlending() const
{
    return !mOpaque || textures().size() > 1 || opacity() < 1.0f || blendReadsDestination();
}

} // namespace gfx
