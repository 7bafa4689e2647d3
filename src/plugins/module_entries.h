// ModuleEntries: the instance a wrapper made and the entries it calls it through.
//
// Every call into a module passes the one guard here: without an instance or without the entry nothing is
// called, and the result is the entry's word for failure, which is 0 or null throughout. So nobody needs to
// remember whether a load succeeded. The slots are in the order of the kind's name table; an entry's type is
// named where it is called.
#pragma once

#include <array>
#include <cstddef>
#include <type_traits>

#include "foundation/log.h"
#include "platform/module.h"
#include "quavermill/module.h"

// Modules get the log record as it stands.
static_assert(std::is_standard_layout_v<XLog> && sizeof(XLog) == sizeof(QvLog));
static_assert(offsetof(XLog, mErrorOut) == offsetof(QvLog, errorOut));
static_assert(offsetof(XLog, mInfoOut) == offsetof(QvLog, infoOut));
static_assert(offsetof(XLog, mTraceOut) == offsetof(QvLog, traceOut));

template <std::size_t count>
class ModuleEntries {
  public:
    // The first two entries of every kind.
    static constexpr std::size_t kCreate = 0;
    static constexpr std::size_t kDestroy = 1;

    QvInstance Instance() const { return mInstance; }
    std::array<platform::EntryPoint, count>& Slots() { return mSlots; }

    // Ends an instance that is there and makes a new one. True when there is one now.
    bool Create(const XLog& log) {
        Destroy();
        const auto create = reinterpret_cast<QvDecoderCreate>(mSlots[kCreate]);
        if (create) mInstance = create(reinterpret_cast<const QvLog*>(&log));
        return mInstance != 0;
    }

    void Destroy() {
        Call<QvDecoderDestroy>(kDestroy);
        mInstance = 0;
    }

    template <class Entry, class... Arguments>
    auto Call(std::size_t slot, Arguments... arguments) const {
        using Result = std::invoke_result_t<Entry, QvInstance, Arguments...>;
        if (mInstance == 0 || !mSlots[slot]) return Result();
        return reinterpret_cast<Entry>(mSlots[slot])(mInstance, arguments...);
    }

  private:
    QvInstance mInstance = 0;
    std::array<platform::EntryPoint, count> mSlots = {};
};

// Create and Destroy are the same function type in all three contracts.
static_assert(std::is_same_v<QvDecoderCreate, QvEncoderCreate> &&
              std::is_same_v<QvDecoderCreate, QvEffectCreate>);
static_assert(std::is_same_v<QvDecoderDestroy, QvEncoderDestroy> &&
              std::is_same_v<QvDecoderDestroy, QvEffectDestroy>);
