// The flat form of a tag list, as a decoder module could hand it over: any bytes.
//
// Whatever a list took from them has to come back from its own flat form, and that form has to be the same
// each time.
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "foundation/id_tag_list.h"

namespace {

void Require(bool holds) {
    if (!holds) std::abort();
}

bool SameBytes(const clByteStore& first, const clByteStore& second) {
    if (first.Size() != second.Size()) return false;
    return first.Size() == 0 || std::memcmp(first.Data(), second.Data(), first.Size()) == 0;
}

void RequireSame(const clIDTagList& first, const clIDTagList& second) {
    Require(first.Count() == second.Count());
    for (std::int32_t index = 0; index < first.Count(); ++index) {
        const IDTagRow &row = first.At(index), &other = second.At(index);
        Require(row.name == other.name && row.value == other.value && SameBytes(row.art, other.art));
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    clIDTagList list;
    list.Deserialise(data, static_cast<std::int64_t>(size));
    Require(list.Current() == (list.Count() > 0 ? &list.At(list.Count() - 1) : nullptr));

    clByteStore flat, again;
    Require(list.Serialise(flat));
    clIDTagList copy;
    copy.Deserialise(flat.Data(), flat.Size());
    RequireSame(list, copy);
    Require(copy.Serialise(again) && SameBytes(flat, again));
    return 0;
}
