// XStringList: an XPointerArray that owns its XStrings.
#pragma once

#include <cstdint>

#include "foundation/pointer_array.h"
#include "foundation/wide_string.h"

class XStringList {
  public:
    // True when `first` goes strictly before `second`.
    using Compare = bool (*)(const XString& first, const XString& second, std::intptr_t user);

    XStringList() = default;
    XStringList(const XStringList&) = delete;
    XStringList& operator=(const XStringList&) = delete;
    ~XStringList();

    std::int32_t Count() const { return mItems.Count(); }
    XString& At(std::int32_t index) const {
        return *static_cast<XString*>(mItems.At(index));
    }  // 0 to Count() - 1

    void Add(const char16_t* text);
    void Insert(std::int32_t index, const char16_t* text);  // -1 or above Count() appends
    void RemoveAt(std::int32_t index);                      // outside the list nothing happens
    void Clear();

    // Quicksort, not stable, over first to last; -1 stands for the list's own ends.
    void Sort(Compare goesBefore, std::intptr_t user, std::int32_t first = -1, std::int32_t last = -1);
    // By unit value; a `fold` other than 0 takes A to Z as a to z. Fits Sort.
    static bool Less(const XString& first, const XString& second, std::intptr_t fold);
    static bool Less(const char16_t* first, const char16_t* second, bool fold);  // a null second gives false

    // Refills the list with the lines of `text`, split at each carriage return and the line feeds behind it.
    static void SplitLines(const XString& text, XStringList& list);
    // Appends the pieces of `text` between "\r\n" pairs, empty ones included.
    static void SplitOnLineEnd(XStringList& list, const XString& text);

  private:
    XPointerArray mItems;
};
