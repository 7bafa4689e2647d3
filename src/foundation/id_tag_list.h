// clIDTagList: rows of name, value and bytes, with the flat form in which they cross to a decoder module.
//
// The flat form, all integers 32-bit little-endian, texts UTF-16 with their NUL:
//
//     count of entries
//     per entry: size of the entry, this field included; name; value; the rest of the size is the row's bytes
#pragma once

#include <cstdint>
#include <memory>

#include "foundation/byte_store.h"
#include "foundation/pointer_array.h"
#include "foundation/wide_string.h"

struct IDTagRow {
    XString name;
    XString value;
    clByteStore art;
};

class clIDTagList {
  public:
    clIDTagList() = default;
    clIDTagList(const clIDTagList&) = delete;
    clIDTagList& operator=(const clIDTagList&) = delete;
    ~clIDTagList();

    std::int32_t Count() const { return mRows.Count(); }
    IDTagRow& At(std::int32_t index) const {
        return *static_cast<IDTagRow*>(mRows.At(index));
    }                                               // 0 to Count() - 1
    IDTagRow* Current() const { return mCurrent; }  // the row last added or fetched, null for none

    void Add(const char16_t* name, const char16_t* value);
    // Raises when there is no memory for the bytes either, and adds nothing then. A size of 0 leaves a block
    // of 1 byte with Size() 0.
    void AddBinary(const char16_t* name, const char16_t* value, const void* data, std::uint32_t size);
    void RemoveAt(std::int32_t index);  // at or past Count() nothing happens
    void Clear();
    // Makes the row current and returns it; null when there is no such row, and the current one stays.
    IDTagRow* Fetch(std::int32_t index);

    // Writes the flat form, sized exactly; an empty list gives four zero bytes. False when there was no
    // memory for it, or when a row is too large for its 32-bit size.
    bool Serialise(clByteStore& flat) const;
    // Refills the list from a flat form, which is no part of the list itself. Nothing beyond `size` is read:
    // a damaged entry ends the reading, and what was read so far stays, the damaged entry's own name or value
    // included.
    void Deserialise(const void* data, std::int64_t size);

  private:
    void Append(std::unique_ptr<IDTagRow> row);

    XPointerArray mRows;
    IDTagRow* mCurrent = nullptr;
};
