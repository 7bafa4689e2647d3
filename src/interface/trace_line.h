// What a call does, in words for the trace. Put together only while a trace is written, since some lines read
// the host's own buffers, which need not hold any text.
#pragma once

#include <initializer_list>

#include "foundation/joined.h"
#include "foundation/log.h"

inline void TraceLine(const XLog& log, std::initializer_list<const char16_t*> pieces) {
    if (platform::IsOpen(log.mTraceOut)) XLog::Write(Joined(pieces).Text(), log, nullptr, true, nullptr);
}
