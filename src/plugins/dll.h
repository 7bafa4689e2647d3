// XDLL: one loaded module, the base of the three wrappers.
//
// A wrapper is empty (no module, no entry), loaded (a module with every entry), live (an instance beside it),
// or partly loaded: a module that lacks an entry stays held, with the entries it has, until somebody unloads
// it. Which file to load is the caller's matter, and so are the words for a failure: there is no telling a
// missing file from a module that refuses to start or lacks a name. One thread at a time.
#pragma once

#include <cstdint>
#include <span>

#include "platform/module.h"

class XDLL {
  public:
    XDLL() = default;
    XDLL(const XDLL&) = delete;
    XDLL& operator=(const XDLL&) = delete;
    virtual ~XDLL();

    // Loads a module and looks all its entries up. True when it has every one. A module that is held stays,
    // whatever `path` says: unload it first. A null path loads nothing and leaves no entry behind.
    virtual bool Load(const char16_t* path) = 0;

    bool HasModule() const { return mModule != nullptr; }
    bool EntriesGood() const { return mEntriesGood != 0; }

  protected:
    // Load, for the entries of one kind of module: names[i] goes to slots[i]. Each is looked up, in this
    // order, also behind one that is missing.
    bool LoadEntries(const char16_t* path, std::span<const char* const> names,
                     std::span<platform::EntryPoint> slots);
    void FreeModule();

  private:
    platform::ModuleHandle mModule = nullptr;
    std::uint64_t mEntriesGood = 0;
};
