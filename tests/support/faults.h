// Platform operations that a test has taken over: to fail them, to count them, to look at their arguments.
//
//     Faulty<platform::CreatePipe> pipes;
//     pipes.FailCall(2);                             // the second call from here fails, the others are real
//     pipes.Replace([](auto... arguments) { ... });  // every call comes here
//     pipes.Native(arguments...);                    // what the platform does
//     pipes.Calls();                                 // how many there were
//
// The real operation is back at the end of the scope. One Faulty of an operation may live at a time; calls
// may come from any thread.
#pragma once

#include <atomic>
#include <functional>
#include <mutex>
#include <type_traits>

#include "platform/error.h"
#include "platform/operation.h"

namespace faults {

template <auto& operation, class Signature>
class Substitute;

template <auto& operation, class Result, class... Arguments>
class Substitute<operation, Result(Arguments...)> {
  public:
    using Function = std::function<Result(Arguments...)>;

    Substitute() {
        sSelf.store(this);
        operation.Substitute(&Substitute::Enter);
    }
    ~Substitute() {
        operation.Substitute(nullptr);
        sSelf.store(nullptr);
    }
    Substitute(const Substitute&) = delete;
    Substitute& operator=(const Substitute&) = delete;

    void Replace(Function function) {
        std::lock_guard lock(mLock);
        mFunction = std::move(function);
    }

    // The `call`-th call counted from now (1 is the next) fails with `result` (the zero of its type unless
    // given) and last error `error`. Handles that fail with -1 need it given.
    template <class R = Result>
    void FailCall(int call, R result, std::uint32_t error = platform::kErrorGeneral) {
        Fail(call, call, Failing(error, result));
    }
    void FailCall(int call) { Fail(call, call, Failing(platform::kErrorGeneral)); }
    // Every call from now on fails.
    template <class R = Result>
    void FailAlways(R result, std::uint32_t error = platform::kErrorGeneral) {
        Fail(1, -1, Failing(error, result));
    }
    void FailAlways() { Fail(1, -1, Failing(platform::kErrorGeneral)); }

    int Calls() const { return mCalls.load(); }
    static Result Native(Arguments... arguments) { return operation.Native()(arguments...); }

  private:
    // Answers `result`, or the zero of its type where none is given. A failing SetLastError must not come
    // back here.
    static Function Failing(std::uint32_t error, auto... result) {
        return [=](Arguments...) -> Result {
            platform::SetLastError.Native()(error);
            return Result(result...);
        };
    }

    void Fail(int first, int last, Function failure) {
        std::lock_guard lock(mLock);
        mFirst = mCalls + first;
        mLast = last < 0 ? -1 : mCalls + last;
        mFailure = std::move(failure);
    }

    static Result Enter(Arguments... arguments) {
        Substitute* self = sSelf.load();
        if (!self) return Native(arguments...);
        Function function;
        {
            std::lock_guard lock(self->mLock);
            const int call = ++self->mCalls;
            const bool fails =
                self->mFailure && call >= self->mFirst && (self->mLast < 0 || call <= self->mLast);
            function = fails ? self->mFailure : self->mFunction;
        }
        return function ? function(arguments...) : Native(arguments...);
    }

    static inline std::atomic<Substitute*> sSelf = nullptr;
    mutable std::mutex mLock;
    std::atomic<int> mCalls = 0;
    int mFirst = 0, mLast = 0;
    Function mFunction;
    Function mFailure;
};

template <class Type>
struct Signature;
template <class Sig>
struct Signature<platform::Operation<Sig>> {
    using Type = Sig;
};

}  // namespace faults

template <auto& operation>
using Faulty =
    faults::Substitute<operation, typename faults::Signature<std::remove_cvref_t<decltype(operation)>>::Type>;
