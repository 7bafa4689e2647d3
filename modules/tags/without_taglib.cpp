// What is left where TagLib can't be had: the text of WAVE files is read by our own reader, other files read
// as without tags, and none are changed.
#include "modules/tags/info_fields.h"
#include "modules/tags/tag_file.h"
#include "modules/tags/tag_rows.h"
#include "modules/tags/tag_rules.h"

namespace {

bool Refuse(const char16_t* file, const clModuleLog& log) {
    log.Error(file, u"its tags are not changed: these modules were built without what changes tags");
    return false;
}

}  // namespace

bool ReadFileTags(TagContainer container, const char16_t* file, clIDTagList& tags, const clModuleLog& log) {
    if (container != TagContainer::wave) return true;
    clFileReader reader;
    std::vector<InfoField> fields;
    if (!reader.Open(file) || !ReadInfoFields(reader, fields)) {
        log.Error(file, u"its tags can't be read");
        return false;
    }
    AddRows(RowsOfFields(container, RowsOfInfo(fields)), tags);
    return true;
}

bool WriteFileTags(TagContainer, const char16_t* file, const clIDTagList&, const clModuleLog& log) {
    return Refuse(file, log);
}

bool DeleteFileTags(TagContainer, const char16_t* file, const char16_t*, const clModuleLog& log) {
    return Refuse(file, log);
}
