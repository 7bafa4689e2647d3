// The host's list of effects.
#include "interface/converter.h"
#include "interface/text.h"
#include "interface/trace_line.h"

std::int32_t clConverter::DSPAddToList(const char16_t* name, const char16_t* settings) {
    XTraceScope trace(log, "clConverter::DSPAddToList");
    TraceLine(log, {u"Adding DSP: ", name, u"  Settings: ", settings});
    dspChain.Add(name, settings);
    return 1;
}

// The trace shows the buffers as the host has them, also when nothing was written to them.
std::int32_t clConverter::DSPReadList(std::int32_t index, char16_t* name, char16_t* settings) {
    XTraceScope trace(log, "clConverter::DSPReadList");
    const DSPRow* row = dspChain.Fetch(index);
    if (row) {
        CopyOut(row->name, name);
        CopyOut(row->settings, settings);
    }
    TraceLine(log, {u"DSP: ", name, u"  Settings: ", settings});
    return row ? 1 : 0;
}

std::int32_t clConverter::DSPRemoveFromList(std::int32_t index) {
    XTraceScope trace(log, "clConverter::DSPRemoveFromList");
    TraceLine(log, {u"Removing DSP: ", XString(index).Text()});
    return dspChain.RemoveAt(index) ? 1 : 0;
}
