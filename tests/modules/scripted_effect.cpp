// An effect that does as its script says (script.h): create, panel and say are its directives.
#define QV_DSP_MODULE
#include "modules/script.h"

namespace {

using Effect = script::PanelInstance;

}  // namespace

QvInstance DSP_Create(const QvLog* log) {
    return script::Make<Effect>(log, "DSP_Create");
}

void DSP_Destroy(QvInstance instance) {
    script::End<Effect>(instance, "DSP_Destroy");
}

void DSP_ShowConfigBit(QvInstance instance, uint64_t parent, int32_t x, int32_t y, const QvChar* settings) {
    reinterpret_cast<Effect*>(instance)->Show("DSP_ShowConfigBit", parent, x, y, settings);
}

const QvChar* DSP_RemoveConfigBit(QvInstance instance, uint64_t parent) {
    return reinterpret_cast<Effect*>(instance)->Remove("DSP_RemoveConfigBit", parent);
}

extern "C" {
#include "modules/converter_entries.h"
}
