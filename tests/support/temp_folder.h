// A folder of a test's own below the system's folder for temporary files; it goes, with all that is in it, at
// the end of the scope. It works on the file system directly, so that failing platform operations do not
// touch it.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

class TempFolder {
  public:
    TempFolder();
    ~TempFolder();
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    std::u16string Path() const { return mPath.u16string(); }  // without a trailing separator
    // The path of an entry. Slashes in `name` become the platform's separators.
    std::u16string operator/(std::u16string_view name) const;

    // A file with these bytes; the result is its path.
    std::u16string Write(std::u16string_view name, std::string_view bytes = {}) const;
    std::u16string MakeFolder(std::u16string_view name) const;  // with the levels above it
    std::string Read(std::u16string_view name) const;           // a file's bytes, empty when there is none
    bool Has(std::u16string_view name) const;
    void SetReadOnly(std::u16string_view name) const;

  private:
    std::filesystem::path mPath;
};
