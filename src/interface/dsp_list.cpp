// The list of effects: rows on the heap, so that they keep their place in memory while the list changes.
#include "interface/dsp_list.h"

#include <memory>

clDSPList::~clDSPList() {
    Clear();
}

// The row is complete before it joins, so that a failed allocation leaves the list as it was.
void clDSPList::Add(const char16_t* name, const char16_t* settings) {
    auto row = std::make_unique<DSPRow>(DSPRow{name, settings});
    mRows.Append(row.get());
    mCurrent = row.release();
}

DSPRow* clDSPList::Fetch(std::int32_t index) {
    if (!Has(index)) return nullptr;
    mCurrent = &At(index);
    return mCurrent;
}

bool clDSPList::RemoveAt(std::int32_t index) {
    if (!Has(index)) return false;
    DSPRow* const row = &At(index);
    mRows.RemoveAt(index);
    if (row == mCurrent) mCurrent = nullptr;
    delete row;
    return true;
}

void clDSPList::Clear() {
    for (std::int32_t index = 0; index < Count(); ++index) delete &At(index);
    mRows.Clear();
    mCurrent = nullptr;
}
