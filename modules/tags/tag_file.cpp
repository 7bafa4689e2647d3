#include "modules/tags/tag_file.h"

#include "foundation/joined.h"
#include "modules/tags/tag_change.h"
#include "modules/tags/tag_rows.h"
#include "modules/tags/tag_rules.h"

namespace {

bool Refuse(const char16_t* file, const char16_t* trouble, std::uint32_t error, const clModuleLog& log) {
    XString text(trouble);
    if (error != 0) text = Joined({trouble, u" (error ", XString::FromUInt64(error).Text(), u")"});
    log.Error(file, text.Text());
    return false;
}

}  // namespace

bool ReadFileTags(TagContainer container, const char16_t* file, clIDTagList& tags, const clModuleLog& log) {
    if (container == TagContainer::none) return true;
    clFileReader reader;
    if (!reader.Open(file)) return Refuse(file, u"can't be opened", reader.Error(), log);
    clTagStream stream(reader);
    const auto editor = OpenTagEditor(container, stream, reader);
    const TagSet fields = editor->IsValid() ? editor->Read() : TagSet();
    if (reader.Error() != 0) return Refuse(file, u"its tags can't be read", reader.Error(), log);
    if (!editor->IsValid()) return Refuse(file, u"its tags can't be found", 0, log);
    AddRows(RowsOfFields(container, fields), tags);
    return true;
}

bool WriteFileTags(TagContainer container, const char16_t* file, const clIDTagList& rows,
                   const clModuleLog& log) {
    return rows.Count() == 0 || clTagChange(container, file, log).Write(TakeRows(rows, file, log));
}

bool DeleteFileTags(TagContainer container, const char16_t* file, const char16_t* name,
                    const clModuleLog& log) {
    clTagChange change(container, file, log);
    return name[0] == 0 ? change.DeleteAll() : change.Delete(CleanName(name));
}
