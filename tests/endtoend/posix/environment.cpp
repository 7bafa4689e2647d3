#include "endtoend/environment.h"

#include <stdlib.h>

void SetVariable(const std::string& name, const std::string& value) {
    setenv(name.c_str(), value.c_str(), 1);
}
