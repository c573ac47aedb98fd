#pragma once

#include "OrbisUIFrameworkExport.h"
#include "SkinColor.h"

#include <QString>

/// The day and night colour sets. Styles give colours by skin name
/// ("foregroundColor") or literally ("#1f6feb", "#801f6feb", "white"); parseColor
/// turns either into a SkinColor that follows the day/night switch. A name is
/// looked up first in the "[Skin]" group of the style files (an entry such as
/// `accentColor = "Color:#3b8cff"`, redefined per skin by the skin's override
/// file), then in the built-in set.
class ORBIS_UI_EXPORT Skin
{
public:
    /// An unknown name that is no colour either is reported once and reads as
    /// an invalid colour.
    static SkinColor parseColor(const QString& text);
    static bool hasColor(const QString& name);
    /// A product replaces or adds a named colour.
    static void setColor(const QString& name, const SkinColor& color);
};
