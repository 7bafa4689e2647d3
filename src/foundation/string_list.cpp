#include "foundation/string_list.h"

#include <memory>

namespace {

char16_t Folded(char16_t unit, bool fold) {
    return fold && unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + (u'a' - u'A')) : unit;
}

}  // namespace

XStringList::~XStringList() {
    Clear();
}

void XStringList::Add(const char16_t* text) {
    Insert(-1, text);
}

void XStringList::Insert(std::int32_t index, const char16_t* text) {
    auto entry = std::make_unique<XString>(text);
    mItems.Insert(index, entry.get());
    entry.release();
}

void XStringList::RemoveAt(std::int32_t index) {
    if (index < 0 || index >= Count()) return;
    delete &At(index);
    mItems.RemoveAt(index);
}

void XStringList::Clear() {
    for (std::int32_t index = 0; index < Count(); ++index) delete &At(index);
    mItems.Clear();
}

// Quicksort with Hoare's partition around the middle entry: the lower part by recursion, the upper part in
// the loop. Both scans stop at the range's ends, so a compare that contradicts itself gives some order and
// never leaves the range.
void XStringList::Sort(Compare goesBefore, std::intptr_t user, std::int32_t first, std::int32_t last) {
    if (first < 0) first = 0;
    if (last == -1) last = Count() - 1;
    if (first >= Count() || last >= Count()) return;
    while (first < last) {
        const XString& pivot = At(first + (last - first) / 2);
        std::int32_t low = first, high = last;
        while (low <= high) {
            while (low < last && goesBefore(At(low), pivot, user)) ++low;
            while (high > first && goesBefore(pivot, At(high), user)) --high;
            if (low > high) break;
            mItems.Swap(low++, high--);
        }
        if (first < high) Sort(goesBefore, user, first, high);
        first = low;
    }
}

bool XStringList::Less(const XString& first, const XString& second, std::intptr_t fold) {
    return Less(first.Text(), second.Text(), fold != 0);
}

bool XStringList::Less(const char16_t* first, const char16_t* second, bool fold) {
    if (!second) return false;
    for (; *first; ++first, ++second) {
        const char16_t left = Folded(*first, fold), right = Folded(*second, fold);
        if (left != right) return left < right;
    }
    return *second != 0;
}

void XStringList::SplitLines(const XString& text, XStringList& list) {
    const XString copy(text);  // which may be an entry of the list
    list.Clear();
    for (std::int32_t start = 1; start <= copy.Length();) {
        const std::int32_t end = copy.Find(u'\r', start);
        if (end == 0) return list.Add(copy.MidToEnd(start).Text());
        list.Add(copy.Mid(start, end - 1).Text());
        for (start = end + 1; copy.GetAt(start) == u'\n';) ++start;
    }
}

void XStringList::SplitOnLineEnd(XStringList& list, const XString& text) {
    if (text.IsEmpty()) return;
    std::int32_t start = 1;
    while (const std::int32_t end = text.Find(u"\r\n", start)) {
        list.Add(text.Mid(start, end - 1).Text());
        start = end + 2;
    }
    list.Add(text.MidToEnd(start).Text());
}
