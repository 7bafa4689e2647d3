#include "converter/lifeline.h"

#include <chrono>

#include "platform/clock.h"
#include "platform/file.h"
#include "platform/synchronisation.h"

namespace {
constexpr std::chrono::milliseconds kPeriod(500);
constexpr std::uint32_t kPatienceMs = 20000;
}  // namespace

bool Lifeline::Start(const std::u16string& cancelEvent, const std::u16string& watchdogEvent,
                     std::u16string* missing) {
    mCancel = platform::OpenEventW(cancelEvent.c_str());
    mWatchdog = platform::OpenEventW(watchdogEvent.c_str());
    if (!platform::IsOpen(mCancel) || !platform::IsOpen(mWatchdog)) {
        *missing = platform::IsOpen(mCancel) ? watchdogEvent : cancelEvent;
        return false;
    }
    Beat();
    platform::SetEvent(mWatchdog);
    mThread = std::thread([this] { Run(); });
    return true;
}

Lifeline::~Lifeline() {
    if (mThread.joinable()) {
        {
            const std::lock_guard lock(mLock);
            mEnding = true;
        }
        mWake.notify_one();
        mThread.join();
    }
    platform::CloseHandle(mCancel);
    platform::CloseHandle(mWatchdog);
}

void Lifeline::Beat() {
    mLastBeat = platform::GetTickCount();
}

bool Lifeline::Cancelled() const {
    return platform::IsOpen(mCancel) && platform::WaitForSingleObject(mCancel, 0) == platform::kWaitObject;
}

void Lifeline::Run() {
    std::unique_lock lock(mLock);
    while (!mWake.wait_for(lock, kPeriod, [this] { return mEnding; })) {
        if (platform::GetTickCount() - mLastBeat <= kPatienceMs) platform::SetEvent(mWatchdog);
    }
}
