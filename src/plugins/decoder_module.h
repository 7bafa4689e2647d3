// clQvDecoder: a loaded decoder module, its instance, and what it was loaded for.
//
// What each entry does and in which order they may be called stands in quavermill/module.h. All calls are
// guarded: without a live instance they do nothing and give false.
#pragma once

#include "foundation/wide_string.h"
#include "plugins/dll.h"
#include "plugins/module_entries.h"

class clQvDecoder : public XDLL {
  public:
    static constexpr std::size_t kEntryCount = 9;
    static const char* const kEntryNames[kEntryCount];

    ~clQvDecoder() override { Unload(); }

    bool Load(const char16_t* path) override;
    // Ends the instance, lets the module go and forgets what it was loaded for.
    void Unload();

    // The extension and the file that the module was loaded for. Empty, and forgotten, when no module is
    // held.
    const XString& RememberedExtension();
    const XString& RememberedPath();
    void Remember(const XString& extension, const XString& path);

    bool Create(const XLog& log) { return mEntries.Create(log); }
    void Destroy() { mEntries.Destroy(); }
    QvInstance Instance() const { return mEntries.Instance(); }

    bool Get(const char16_t* key, clCodecQueryRec* query) const;
    // A file type that the module decodes. False behind the last one, which is the first that is refused or
    // has no extension text.
    bool GetDecodesRow(std::uint32_t index, clCodecQueryRec* row) const;
    bool Set(const char16_t* key, const clCodecQueryRec* query) const;
    bool Open(clOpenFileRec* record) const;
    void Close(void* record) const;
    bool DecodeBlock(clBlockRec* block) const;
    void SetPosition(std::int64_t frame) const;
    bool DeleteATag(const char16_t* file, const char16_t* name) const;

  private:
    XString mExtension;
    XString mPath;
    ModuleEntries<kEntryCount> mEntries;
};
