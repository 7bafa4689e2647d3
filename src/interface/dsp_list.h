// clDSPList: the effects of a conversion, in their order.
#pragma once

#include <cstdint>

#include "foundation/pointer_array.h"
#include "foundation/wide_string.h"

struct DSPRow {
    XString name;
    XString settings;
};

class clDSPList {
  public:
    clDSPList() = default;
    clDSPList(const clDSPList&) = delete;
    clDSPList& operator=(const clDSPList&) = delete;
    ~clDSPList();

    std::int32_t Count() const { return mRows.Count(); }
    DSPRow& At(std::int32_t index) const {
        return *static_cast<DSPRow*>(mRows.At(index));
    }                                             // 0 to Count() - 1
    DSPRow* Current() const { return mCurrent; }  // the row last added or fetched, null for none

    void Add(const char16_t* name, const char16_t* settings);
    // Makes the row current and returns it; null when there is no such row, and the current one stays.
    DSPRow* Fetch(std::int32_t index);
    bool RemoveAt(std::int32_t index);  // false when there is no such row
    void Clear();

  private:
    bool Has(std::int32_t index) const { return index >= 0 && index < Count(); }

    XPointerArray mRows;  // each its own allocation, owned here
    DSPRow* mCurrent = nullptr;
};
