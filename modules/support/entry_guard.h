// No exception leaves a module: its caller may have been built by another compiler, or in another language.
#pragma once

#include <new>

#include "modules/support/module_log.h"

// What `entry` returns, or `failed` when it raised, with a line to the error channel.
template <class Result, class Entry>
Result Guarded(const clModuleLog& log, Result failed, Entry entry) {
    try {
        return entry();
    } catch (const std::bad_alloc&) {
        log.ErrorLine(u"not enough memory\r\n");
    } catch (...) {
        log.ErrorLine(u"an unexpected failure inside the module\r\n");
    }
    return failed;
}
