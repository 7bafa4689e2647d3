// What the user has stored for an encoder, where quavermill.h says that it
// stands.
#pragma once

#include <string>

std::u16string StoredSettings(const std::u16string& encoder);  // empty for none
bool StoreSettings(const std::u16string& encoder, const std::u16string& text);
