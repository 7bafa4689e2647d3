// The tags that the output gets: the source's own, unless they are left behind, and the host's.
#pragma once

#include <string>

#include "converter/command.h"
#include "converter/reporter.h"
#include "converter/source.h"
#include "foundation/id_tag_list.h"

// A name that the host gives values takes the place of the source's own values of that name (ASCII case aside). A row with
// bytes stays in any case: a switch can't carry any. Before the source is opened.
void CollectTags(const Command& command, Source& source, clIDTagList& tags);

// Has the decoder module for the destination's type write the tags into `file`, the finished temporary. A type whose
// module does not write tags makes no conversion fail: the host is told, not alarmed.
void WriteTags(const Command& command, const std::u16string& file, const clIDTagList& tags,
               Reporter& reporter);
