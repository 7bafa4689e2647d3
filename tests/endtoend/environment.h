// The environment of this process, which its children inherit.
#pragma once

#include <string>

void SetVariable(const std::string& name, const std::string& value);
