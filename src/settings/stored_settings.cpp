// Where a text stands is part of the interface, and told there: hosts read it too.
#include "settings/stored_settings.h"

#include "foundation/joined.h"
#include "foundation/registry.h"
#include "quavermill/quavermill.h"

namespace {

constexpr const char16_t* kValue = u"" QV_SETTINGS_VALUE;

XString KeyOf(const XString& encoder) {
    return Joined({u"" QV_SETTINGS_KEY, encoder.Text()});
}

}  // namespace

XString StoredSettings(const XString& encoder) {
    return XRegistry::ReadString(kValue, KeyOf(encoder).Text());
}

void StoreSettings(const XString& encoder, const XString& text) {
    XRegistry::WriteString(text, kValue, KeyOf(encoder).Text());
}
