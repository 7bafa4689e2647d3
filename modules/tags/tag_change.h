// clTagChange: one change of the tags of one file, all of it or nothing.
#pragma once

#include <functional>
#include <memory>
#include <set>

#include "modules/tags/tag_editor.h"

class clTagChange {
  public:
    // All must outlive the change.
    clTagChange(TagContainer container, const char16_t* file, const clModuleLog& log)
        : mContainer(container), mPath(file), mLog(log) {}

    // Each is the only call to a change. False, with the reason in the log, leaves the file as it was.
    bool Write(const TagSet& rows);
    bool Delete(const std::u16string& name);
    bool DeleteAll();

  private:
    bool Open();
    // Brings the file's fields to what `next` says, if it says anything new.
    bool Apply(const TagSet& next);
    bool Commit(const TagSet& expected);
    bool Build(const char16_t* temporary);
    bool Verify(const char16_t* temporary, const TagSet& expected);
    TagSet Replaced(const std::set<std::u16string>& names, const TagSet& rows) const;
    bool Fail(const char16_t* trouble) const;
    bool FailWithError(const char16_t* trouble, std::uint32_t error) const;

    const TagContainer mContainer;
    const char16_t* const mPath;
    const clModuleLog& mLog;
    clFileReader mFile;
    std::unique_ptr<clTagStream> mStream;
    std::unique_ptr<clTagEditor> mEditor;
    TagSet mFields;  // as they stand in the file
};
