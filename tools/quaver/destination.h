// Where quaver may write.
#pragma once

#include <string>

bool Exists(const std::u16string& path);

// Why `destination`, made out of `source`, is not written; empty when it may be. An existing file is replaced
// only when told; a folder, a device and the source itself never are.
std::u16string ObjectionTo(const std::u16string& source, const std::u16string& destination, bool overwrite);
