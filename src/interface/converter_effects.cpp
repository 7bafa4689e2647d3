// The host's list of effects. What is done to it goes to the trace in words; those are put together only
// while a trace is written, since one of them reads the host's buffers.
#include "foundation/joined.h"
#include "interface/converter.h"
#include "interface/text.h"

namespace {
void Trace(const XLog& log, std::initializer_list<const char16_t*> pieces) {
    if (platform::IsOpen(log.mTraceOut)) XLog::Write(Joined(pieces).Text(), log, nullptr, true, nullptr);
}
}  // namespace

std::int32_t clConverter::DSPAddToList(const char16_t* name, const char16_t* settings) {
    XTraceScope trace(log, "clConverter::DSPAddToList");
    Trace(log, {u"Adding DSP: ", name, u"  Settings: ", settings});
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
    Trace(log, {u"DSP: ", name, u"  Settings: ", settings});
    return row ? 1 : 0;
}

std::int32_t clConverter::DSPRemoveFromList(std::int32_t index) {
    XTraceScope trace(log, "clConverter::DSPRemoveFromList");
    Trace(log, {u"Removing DSP: ", XString(index).Text()});
    return dspChain.RemoveAt(index) ? 1 : 0;
}
