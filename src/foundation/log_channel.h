// The way of a finished line into its channel.
#pragma once

#include "foundation/log.h"

namespace log_channel {

// One write for the whole line, so that lines of several writers never mix; in pieces where a drain is named.
// What the platform refuses is lost without comment.
void Write(platform::Handle channel, const XString& line);

void SetDrain(platform::Handle channel, XLog::Drain drain, void* user);

}  // namespace log_channel
