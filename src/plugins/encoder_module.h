// clQvEncoder: a loaded encoder module and its instance.
//
// What each entry does and in which order they may be called stands in quavermill/module.h. All calls are
// guarded: without a live instance they do nothing and give false or null.
#pragma once

#include "plugins/dll.h"
#include "plugins/module_entries.h"

class clQvEncoder : public XDLL {
  public:
    static constexpr std::size_t kEntryCount = 9;
    static const char* const kEntryNames[kEntryCount];

    ~clQvEncoder() override { Unload(); }

    bool Load(const char16_t* path) override;
    void Unload();  // ends the instance and lets the module go

    bool Create(const XLog& log) { return mEntries.Create(log); }
    void Destroy() { mEntries.Destroy(); }
    QvInstance Instance() const { return mEntries.Instance(); }

    bool Get(const char16_t* key, clCodecQueryRec* query) const;
    bool Set(const char16_t* key, const clCodecQueryRec* query) const;
    void ShowConfigBit(std::uint64_t parent, std::int32_t x, std::int32_t y, const char16_t* settings) const;
    const char16_t* RemoveConfigBit(std::uint64_t parent) const;  // the module's own text: copy it at once
    bool BeginConversion(clEncoderSessionRec* session) const;
    bool EndConversion(clEncoderSessionRec* session) const;
    bool EncodeBlock(const clBlockRec* block) const;

  private:
    ModuleEntries<kEntryCount> mEntries;
};
