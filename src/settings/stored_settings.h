// An encoder's settings text as the current user has it: one value for each encoder, under the encoder's name.
// Effects have none.
#pragma once

#include "foundation/wide_string.h"

XString StoredSettings(const XString& encoder);  // empty where none is stored, or it can't be read
// In place of what stood there. A store that refuses is not reported: whoever stores has the text.
void StoreSettings(const XString& encoder, const XString& text);
