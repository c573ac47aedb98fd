#pragma once

#include <QImage>
#include <QString>
#include <gtest/gtest.h>

// Reference pictures of scenes, kept in the tree per GL renderer (the same scene
// differs by a few levels between drivers). A picture matches its reference when
// at most `allowedPixels` pixels differ by more than `tolerance` in a channel. On a
// mismatch the actual picture, the reference and a difference picture (differing
// pixels in red over a faded copy) are written to the failure folder.
//
// ORBIS_GOLDEN_UPDATE=1 writes the actual pictures as the references instead
// (scripts/update-golden.sh); ORBIS_GOLDEN_OUT names the failure folder (default:
// "golden-failures" in the working folder).
class GoldenImage
{
public:
    static constexpr int kTolerance = 6;

    // The current context's GL renderer string as a folder name ("unknown" without
    // a current context).
    static QString rendererKey();
    static QString referenceFolder();
    static bool updating();

    // Whether the tree holds references for this renderer at all.
    static bool haveReferences();
    static ::testing::AssertionResult matches(const QString& scene, const QImage& actual,
                                              int tolerance = kTolerance, int allowedPixels = 0);
};
