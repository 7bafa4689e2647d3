// The two entries of a settings panel, which encoders and effects have alike.
#pragma once

#include "foundation/qv_text.h"
#include "modules/support/entry_guard.h"
#include "modules/support/panel.h"
#include "quavermill/module.h"

// The instance is an Owner: a clPanelOwner with a Log().
template <class Owner>
void ShowPanel(QvInstance instance, std::uint64_t parent, std::int32_t x, std::int32_t y,
               const QvChar* settings) {
    if (instance == 0) return;
    Owner& owner = *reinterpret_cast<Owner*>(instance);
    Guarded(owner.Log(), false, [&] {
        owner.Panel().Show(reinterpret_cast<platform::Window>(parent), x, y,
                           settings ? FromQvText(settings) : u"");
        return true;
    });
}

template <class Owner>
const QvChar* RemovePanel(QvInstance instance) {
    if (instance == 0) return nullptr;
    Owner& owner = *reinterpret_cast<Owner*>(instance);
    const char16_t* const nothing = nullptr;
    return ToQvText(Guarded(owner.Log(), nothing, [&] { return owner.Panel().Remove(); }));
}
