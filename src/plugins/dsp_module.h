// clQvDSP: a loaded effect module and its instance.
//
// What each entry does and in which order they may be called stands in quavermill/module.h. The library only
// shows an effect's settings; the audio runs through it in the converter program. All calls are guarded:
// without a live instance they do nothing and give false or null.
#pragma once

#include "plugins/dll.h"
#include "plugins/module_entries.h"

class clQvDSP : public XDLL {
  public:
    static constexpr std::size_t kEntryCount = 11;
    static const char* const kEntryNames[kEntryCount];

    ~clQvDSP() override { Unload(); }

    bool Load(const char16_t* path) override;
    void Unload();  // ends the instance and lets the module go

    bool Create(const XLog& log) { return mEntries.Create(log); }
    void Destroy() { mEntries.Destroy(); }
    QvInstance Instance() const { return mEntries.Instance(); }

    void ShowConfigBit(std::uint64_t parent, std::int32_t x, std::int32_t y, const char16_t* settings) const;
    const char16_t* RemoveConfigBit(std::uint64_t parent) const;  // the module's own text: copy it at once
    bool Get(const char16_t* key, clCodecQueryRec* query) const;
    bool Set(const char16_t* key, const clCodecQueryRec* query) const;
    bool BeginConversion(clEffectSessionRec* session) const;
    bool EndConversion(clEffectSessionRec* session) const;
    bool PassAudioBlock(const clBlockRec* in, clBlockRec* out) const;
    bool PassNonLive(const clBlockRec* in) const;
    bool AfterConversion(const char16_t* file) const;

  private:
    ModuleEntries<kEntryCount> mEntries;
};
