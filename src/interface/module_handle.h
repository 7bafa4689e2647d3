// The library's own module, as the system's loader names it. Written at every notification of the loader, on
// whatever thread that comes; null in a program that links the library's rooms directly, which stands for the
// program itself.
#pragma once

#include <atomic>

#include "platform/module.h"

inline std::atomic<platform::ModuleHandle> gModuleHandle = nullptr;
