#pragma once

#include "OrbisUIFrameworkExport.h"

class DisplayView;

/// A post-processing step applied to a layer after it has been rendered (blur, tint).
/// The source must render into a layer of its own.
class ORBIS_UI_EXPORT DisplayViewEffect
{
public:
    virtual ~DisplayViewEffect() = default;
    /// Returns whether the view was accepted.
    bool setSourceView(DisplayView* view);
    DisplayView* sourceView() const { return mSource; }
    virtual void apply() = 0;

private:
    DisplayView* mSource = nullptr;
};
