#include "DisplayViewEffect.h"

#include "DisplayView.h"
#include "Logger.h"

static const char* const kLogSource = "../../../gui/DisplayView";

bool DisplayViewEffect::setSourceView(DisplayView* view)
{
    if (view && !ORBIS_ASSERT(view->useLayer(),
                              QStringLiteral("Cannot set an effect on a view that does not use a layer")))
        return false;
    mSource = view;
    return true;
}
