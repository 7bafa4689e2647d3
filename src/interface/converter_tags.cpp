// The host's list of tags. A row without a value takes part in nothing, so it is not read back either.
#include "interface/converter.h"
#include "interface/text.h"

std::int32_t clConverter::IDTagsAddToList(const char16_t* name, const char16_t* value) {
    XTraceScope trace(log, "clConverter::IDTagsAddToList");
    tagList.Add(name, value);
    return 1;
}

std::int32_t clConverter::IDTagsReadList(std::int32_t index, char16_t* name, char16_t* value) {
    XTraceScope trace(log, "clConverter::IDTagsReadList");
    if (index < 0 || index >= tagList.Count()) return 0;
    const IDTagRow& row = tagList.At(index);
    if (row.value.IsEmpty()) return 0;
    CopyOut(row.name, name);
    CopyOut(row.value, value);
    return 1;
}

std::int32_t clConverter::IDTagsRemoveFromList(std::int32_t index) {
    XTraceScope trace(log, "clConverter::IDTagsRemoveFromList");
    if (index >= 0) tagList.RemoveAt(index);
    return 1;
}
