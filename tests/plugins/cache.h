// The decoder cache as tests see it: what it holds, and what a look-up costs.
#pragma once

#include <atomic>
#include <string>
#include <vector>

#include "foundation/registry.h"
#include "platform/registry.h"
#include "plugins/wrappers.h"

inline constexpr const char16_t* kDecoderCache = u"Software\\Brindleway\\Quavermill\\DecoderCache64";

// An extension that no other test of this program has used, so that nothing is cached for it.
inline std::string NewExtension() {
    static std::atomic<int> number = 0;
    return ".test" + std::to_string(++number);
}

inline std::u16string Wide(const std::string& text) {
    return {text.begin(), text.end()};
}

inline std::u16string Cached(const std::string& extension) {
    return XRegistry::ReadString(Wide(extension).c_str(), kDecoderCache).Text();
}

inline void SetCached(const std::string& extension, const std::u16string& path) {
    ASSERT_TRUE(XRegistry::WriteString(path.c_str(), Wide(extension).c_str(), kDecoderCache));
}

// What is done while it stands. A value that is asked for its size first counts once.
class Costs {
  public:
    Costs();

    std::vector<std::u16string> read, written;  // value names
    std::vector<std::u16string> loaded;         // paths

  private:
    Faulty<platform::RegQueryValueExW> mQueries;
    Faulty<platform::RegSetValueExW> mWrites;
    Faulty<platform::LoadLibraryW> mLoads;
};

inline Costs::Costs() {
    mQueries.Replace([this](platform::Handle key, const char16_t* name, std::uint32_t* type, void* data,
                            std::uint32_t* size) {
        if (!data) read.emplace_back(name);
        return mQueries.Native(key, name, type, data, size);
    });
    mWrites.Replace([this](platform::Handle key, const char16_t* name, std::uint32_t type, const void* data,
                           std::uint32_t size) {
        written.emplace_back(name);
        return mWrites.Native(key, name, type, data, size);
    });
    mLoads.Replace([this](const char16_t* path) {
        loaded.emplace_back(path);
        return mLoads.Native(path);
    });
}
