// Memory that runs out when a test says so.
//
// A test program's operator new and delete are its own: they do what the library's do until an
// AllocationFaults stands, and then count and fail the allocations of the thread that made it. One may stand
// at a time.
//
//     AllocationFaults memory;
//     memory.FailCall(2);      // the second allocation from here on fails, all others are served
//     memory.FailFrom(1);      // every allocation from here on fails
//     memory.Calls();          // how many there were
//     memory.Live();           // how many of them were not given back
//
// Expectations belong behind its scope, since a test's own report takes memory too. A DLL of the Windows
// build has an operator new of its own, which this one doesn't reach.
#pragma once

#include <gtest/gtest.h>

#include <new>

class AllocationFaults {
  public:
    AllocationFaults();
    ~AllocationFaults();
    AllocationFaults(const AllocationFaults&) = delete;
    AllocationFaults& operator=(const AllocationFaults&) = delete;

    void FailCall(int call);  // 1 is the next
    void FailFrom(int call);

    int Calls() const;
    int Live() const;
    bool HasFailed() const;
};

// For code that raises, not for what answers null when memory runs out (clByteStore).
// Runs `scenario` again and again, each time with the next of its allocations failing, until it runs through.
// Each failure has to come out as std::bad_alloc and leave nothing behind. The result is how many allocations
// it makes.
template <class Scenario>
int FailEachAllocation(Scenario scenario) {
    for (int call = 1;; ++call) {
        bool failed = false, raised = false;
        int live = 0;
        {
            AllocationFaults memory;
            memory.FailCall(call);
            try {
                scenario();
            } catch (const std::bad_alloc&) {
                raised = true;
            }
            failed = memory.HasFailed();
            live = memory.Live();
        }
        EXPECT_EQ(raised, failed) << "allocation " << call;
        EXPECT_EQ(live, 0) << "allocation " << call;
        if (!failed) return call - 1;
    }
}

// Whether `call` raises std::bad_alloc when no allocation succeeds.
template <class Call>
bool RaisesWithoutMemory(Call call) {
    AllocationFaults memory;
    memory.FailFrom(1);
    try {
        call();
    } catch (const std::bad_alloc&) {
        return true;
    }
    return false;
}
