// The counting is switched by one atomic, so that a program without a standing AllocationFaults pays one load
// for each allocation. Blocks come from malloc, which the sanitizers watch as they watch the library's own
// operator new. The forms for over-aligned types stay the library's.
#include "support/allocation_faults.h"

#include <atomic>
#include <cstdlib>
#include <limits>
#include <thread>

namespace {

std::atomic<std::thread::id> gOwner;  // of the AllocationFaults that stands; no thread when none does
int gCalls = 0, gLive = 0;
int gFirst = 0, gLast = 0;  // the calls that fail, 0 and 0 for none
bool gFailed = false;

bool IsWatched() {
    const std::thread::id owner = gOwner.load(std::memory_order_relaxed);
    return owner != std::thread::id() && owner == std::this_thread::get_id();
}

void* Allocate(std::size_t size) noexcept {
    if (!IsWatched()) return std::malloc(size ? size : 1);
    ++gCalls;
    if (gCalls >= gFirst && gCalls <= gLast) {
        gFailed = true;
        return nullptr;
    }
    void* const block = std::malloc(size ? size : 1);
    if (block) ++gLive;
    return block;
}

void* AllocateOrRaise(std::size_t size) {
    void* const block = Allocate(size);
    if (!block) throw std::bad_alloc();
    return block;
}

void Release(void* block) noexcept {
    if (block && IsWatched()) --gLive;
    std::free(block);
}

}  // namespace

AllocationFaults::AllocationFaults() {
    gCalls = gLive = gFirst = gLast = 0;
    gFailed = false;
    gOwner = std::this_thread::get_id();
}

AllocationFaults::~AllocationFaults() {
    gOwner = std::thread::id();
}

void AllocationFaults::FailCall(int call) {
    gFirst = gLast = gCalls + call;
}

void AllocationFaults::FailFrom(int call) {
    gFirst = gCalls + call;
    gLast = std::numeric_limits<int>::max();
}

int AllocationFaults::Calls() const {
    return gCalls;
}

int AllocationFaults::Live() const {
    return gLive;
}

bool AllocationFaults::HasFailed() const {
    return gFailed;
}

void* operator new(std::size_t size) {
    return AllocateOrRaise(size);
}
void* operator new[](std::size_t size) {
    return AllocateOrRaise(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return Allocate(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return Allocate(size);
}
void operator delete(void* block) noexcept {
    Release(block);
}
void operator delete[](void* block) noexcept {
    Release(block);
}
void operator delete(void* block, std::size_t) noexcept {
    Release(block);
}
void operator delete[](void* block, std::size_t) noexcept {
    Release(block);
}
void operator delete(void* block, const std::nothrow_t&) noexcept {
    Release(block);
}
void operator delete[](void* block, const std::nothrow_t&) noexcept {
    Release(block);
}
