// Style strings as views and applications write them, resolved against a few
// named styles, with every attribute read back afterwards.

#include "ConfigRegistry.h"
#include "FuzzEnvironment.h"
#include "Style.h"
#include "StyleManager.h"

namespace {

void loadNamedStyles()
{
    FuzzEnvironment& environment = FuzzEnvironment::instance();
    const QString assets = environment.freshFolder();
    FuzzEnvironment::write(assets + "/styles.conf",
                           "Base=\"FontSize:20; Color:grey; Width:300; Alignment:left|vcenter\"\n"
                           "Title=\"Base; Font:bold; InnerPadding:4,8\"\n"
                           "[Dialog]\nLabel=\"Title; ElideMode:middle; Margin:1,2,3,4\"\n");
    for (const char* empty : {"/styles-common.conf", "/assets-common.conf", "/assets.conf"})
        FuzzEnvironment::write(assets + empty, "");
    qputenv("ORBIS_ASSETS", assets.toLocal8Bit());
    // Millions of distinct texts: kept, they would be the fuzzer's memory limit.
    ConfigRegistry::instance().setOverride("ui/release_unused_styles", "true");
    StyleManager::instance()->loadConfiguration();
}

void readEverything(const Style& style)
{
    for (int i = 0; i < Style::kAttributeCount; ++i) {
        const auto attr = Style::StyleAttribute(i);
        style.isDefined(attr);
        style.intValue(attr);
        style.doubleValue(attr);
        style.stringValue(attr);
        style.pointValue(attr);
        style.padding(attr);
        style.intListValue(attr);
        style.doubleListValue(attr);
        style.alignments(attr);
    }
    style.font();
    style.alignment();
    style.elide();
    style.textFlag();
    style.fontSize();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static const bool loaded = (loadNamedStyles(), true);
    (void)loaded;
    const QString text = QString::fromUtf8(reinterpret_cast<const char*>(data), int(size));
    const Style style(text);
    readEverything(style);

    const QString normalized = Style::normalizedSpec(text);
    FuzzEnvironment::check(Style::normalizedSpec(normalized) == normalized, "normalizing is idempotent");
    FuzzEnvironment::check(Style(normalized) == style, "a style string and its normal form share one style");
    FuzzEnvironment::check(style.isNull() == normalized.isEmpty(),
                           "only blank style strings give the null style");
    return 0;
}
