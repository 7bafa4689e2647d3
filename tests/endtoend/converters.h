// The converters that run on this machine with their command files in one folder, as their system ids. They
// are looked up where the system shows its processes as folders: the kernel does, under Wine too. Elsewhere
// none is ever found.
#pragma once

#include <string>
#include <vector>

std::vector<int> ConvertersOf(const std::u16string& temporaries);
