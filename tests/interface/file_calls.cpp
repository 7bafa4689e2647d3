#include "interface/file_calls.h"

#include <filesystem>
#include <sstream>

LoadBalance::LoadBalance() {
    mLoadCalls.Replace([this](const char16_t* path) -> platform::ModuleHandle {
        ++mLoads;
        if (mRefusesSecond && mHeld > 0) return nullptr;
        const platform::ModuleHandle module = mLoadCalls.Native(path);
        if (module) ++mHeld;
        return module;
    });
    mFreeCalls.Replace([this](platform::ModuleHandle module) {
        --mHeld;
        return mFreeCalls.Native(module);
    });
}

void PrintTo(const Row& row, std::ostream* out) {
    *out << row.result << " '" << testing::PrintToString(row.name) << "' '"
         << testing::PrintToString(row.value) << "'";
}

void FileCalls::TearDown() {
    Journal();
    EXPECT_EQ(balance.Held(), 0);
    std::istringstream lines(mJournal);
    int alive = -refusedInstances;
    for (std::string line; std::getline(lines, line);) alive += (line == "Create") - (line == "Destroy");
    EXPECT_EQ(alive, 0) << mJournal;
}

std::string FileCalls::Journal() {
    const std::string journal = module.TakeJournal();
    mJournal += journal;
    return journal;
}

std::u16string FileCalls::Errors() {
    timers.Tick();
    return host.Errors();
}

std::u16string FileCalls::Info() {
    timers.Tick();
    return host.Info();
}

void FileCalls::Remove(const std::u16string& path) const {
    std::filesystem::remove(std::filesystem::path(path));
}
