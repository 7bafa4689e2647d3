#include "endtoend/environment.h"

#include <windows.h>

void SetVariable(const std::string& name, const std::string& value) {
    ::SetEnvironmentVariableA(name.c_str(), value.c_str());
}
