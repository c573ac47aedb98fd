#include "ScopedConfigOverride.h"

#include "ConfigRegistry.h"

ScopedConfigOverride::ScopedConfigOverride(const QString& key, const QVariant& value)
    : mKey(key), mHadOverride(ConfigRegistry::instance().hasOverride(key)),
      mPrevious(ConfigRegistry::instance().overrideText(key))
{
    ConfigRegistry::instance().setOverride(key, value.toString());
}

ScopedConfigOverride::~ScopedConfigOverride()
{
    if (mHadOverride)
        ConfigRegistry::instance().setOverride(mKey, mPrevious);
    else
        ConfigRegistry::instance().clearOverride(mKey);
}
