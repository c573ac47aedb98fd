#include "GoldenImage.h"

#include <GLFunctions.h>
#include <QDir>
#include <QFileInfo>
#include <QOpenGLContext>
#include <QRegularExpression>

namespace {

QString failureFolder()
{
    const QString folder = qEnvironmentVariable("ORBIS_GOLDEN_OUT", QStringLiteral("golden-failures"));
    QDir().mkpath(folder);
    return QFileInfo(folder).absoluteFilePath();
}

int channelDifference(QRgb a, QRgb b)
{
    return qMax(qMax(qAbs(qRed(a) - qRed(b)), qAbs(qGreen(a) - qGreen(b))),
                qMax(qAbs(qBlue(a) - qBlue(b)), qAbs(qAlpha(a) - qAlpha(b))));
}

} // namespace

QString GoldenImage::rendererKey()
{
    const auto* renderer = QOpenGLContext::currentContext()
                               ? reinterpret_cast<const char*>(
                                     gfx::GLFunctions::current()->glGetString(0x1F01 /* GL_RENDERER */))
                               : nullptr;
    QString key = QString::fromLatin1(renderer ? renderer : "unknown").toLower();
    key.replace(QRegularExpression(QStringLiteral("[^a-z0-9.]+")), QStringLiteral("-"));
    return key.remove(QRegularExpression(QStringLiteral("^-+|-+$")));
}

QString GoldenImage::referenceFolder()
{
    return QStringLiteral(ORBIS_SOURCE_DIR "/tests/golden/references/") + rendererKey();
}

bool GoldenImage::updating()
{
    return qEnvironmentVariableIntValue("ORBIS_GOLDEN_UPDATE") == 1;
}

bool GoldenImage::haveReferences()
{
    return QFileInfo(referenceFolder()).isDir();
}

::testing::AssertionResult GoldenImage::matches(const QString& scene, const QImage& picture, int tolerance,
                                                int allowedPixels)
{
    const QImage actual = picture.convertToFormat(QImage::Format_ARGB32);
    const QString reference = referenceFolder() + QLatin1Char('/') + scene + QStringLiteral(".png");
    if (updating()) {
        QDir().mkpath(referenceFolder());
        if (!actual.save(reference))
            return ::testing::AssertionFailure() << "cannot write " << reference.toStdString();
        return ::testing::AssertionSuccess();
    }
    const QImage expected = QImage(reference).convertToFormat(QImage::Format_ARGB32);
    const QString out = failureFolder() + QLatin1Char('/') + scene;
    if (expected.isNull()) {
        actual.save(out + QStringLiteral("-actual.png"));
        return ::testing::AssertionFailure()
               << "no reference " << reference.toStdString() << " (scripts/update-golden.sh makes it)";
    }
    if (expected.size() != actual.size()) {
        actual.save(out + QStringLiteral("-actual.png"));
        return ::testing::AssertionFailure()
               << "size " << actual.width() << "x" << actual.height() << ", reference " << expected.width()
               << "x" << expected.height();
    }
    QImage diff(actual.size(), QImage::Format_ARGB32);
    int differing = 0;
    int worst = 0;
    QPoint worstAt;
    for (int y = 0; y < actual.height(); ++y) {
        for (int x = 0; x < actual.width(); ++x) {
            const QRgb a = actual.pixel(x, y);
            const int difference = channelDifference(a, expected.pixel(x, y));
            if (difference > worst) {
                worst = difference;
                worstAt = QPoint(x, y);
            }
            if (difference > tolerance) {
                ++differing;
                diff.setPixel(x, y, qRgb(255, 0, 0));
            } else {
                const int grey = 192 + qGray(a) / 4;
                diff.setPixel(x, y, qRgb(grey, grey, grey));
            }
        }
    }
    if (differing <= allowedPixels)
        return ::testing::AssertionSuccess();
    actual.save(out + QStringLiteral("-actual.png"));
    expected.save(out + QStringLiteral("-expected.png"));
    diff.save(out + QStringLiteral("-diff.png"));
    return ::testing::AssertionFailure()
           << differing << " pixels differ by more than " << tolerance << " (worst " << worst << " at "
           << worstAt.x() << "," << worstAt.y() << "); pictures in " << out.toStdString() << "-*.png";
}
