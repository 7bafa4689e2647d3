#include "tag_changes.h"

#include <algorithm>

#include "destination.h"
#include "picture.h"
#include "platform/file.h"

namespace {

// Between the values of a tag that has several.
constexpr char16_t kNextValue = u'\x1F';
constexpr std::int64_t kLargestPicture = 64 << 20;

char16_t Lower(char16_t unit) {
    return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + 32) : unit;
}

bool SameName(const std::u16string& one, const std::u16string& other) {
    return std::equal(one.begin(), one.end(), other.begin(), other.end(),
                      [](char16_t a, char16_t b) { return Lower(a) == Lower(b); });
}

bool ReadWhole(platform::Handle file, std::vector<std::uint8_t>& bytes) {
    std::int64_t size = 0;
    if (!platform::GetFileSizeEx(file, &size) || size <= 0 || size > kLargestPicture) return false;
    bytes.resize(static_cast<std::size_t>(size));
    std::uint32_t read = 0;
    return platform::ReadFile(file, bytes.data(), static_cast<std::uint32_t>(size), &read) &&
           read == bytes.size();
}

bool ReadPicture(const std::u16string& path, std::vector<std::uint8_t>& bytes) {
    const platform::Handle file =
        platform::CreateFileW(path.c_str(), platform::kGenericRead, platform::kShareRead,
                              platform::kOpenExisting, platform::kAttributeNormal);
    if (!platform::IsOpen(file)) return false;
    const bool read = ReadWhole(file, bytes);
    platform::CloseHandle(file);
    return read;
}

bool Write(Host& host, const std::u16string& file, const TextRow& row) {
    std::vector<std::uint8_t> art = row.art;
    auto size = static_cast<std::uint32_t>(art.size());
    return QACWriteIDTag(host.Handle(), AsQvChar(file), AsQvChar(row.name), AsQvChar(row.value), art.data(),
                         &size) == QV_DONE;
}

bool Delete(Host& host, const std::u16string& file, const std::u16string& name) {
    return QACDeleteIDTag(host.Handle(), AsQvChar(file), AsQvChar(name)) == QV_DONE;
}

}  // namespace

// Writing a name replaces all its values, so all of them go in one call.
TagChanges::TagChanges(const TagsOptions& options, std::u16string& objection)
    : mDeleteAll(options.deleteAll), mDeletions(options.deletions) {
    for (const auto& [name, value] : options.settings) {
        const auto row = std::find_if(mRows.begin(), mRows.end(), [&wanted = name](const TextRow& known) {
            return SameName(known.name, wanted);
        });
        if (row == mRows.end()) {
            mRows.push_back({name, value, {}});
        } else {
            row->value += kNextValue + value;
        }
    }
    for (const std::u16string& argument : options.picturesIn) {
        if (!TakePicture(argument, objection)) return;
    }
}

// A file whose own name holds an equals sign is taken as that file.
bool TagChanges::TakePicture(const std::u16string& argument, std::u16string& objection) {
    std::u16string kind, path = argument;
    const std::size_t equals = argument.find(u'=');
    if (equals != std::u16string::npos && !Exists(argument)) {
        kind = argument.substr(0, equals);
        path = argument.substr(equals + 1);
    }
    TextRow row{PictureName(kind), {}, {}};
    if (!ReadPicture(path, row.art)) {
        objection = u"The picture '" + path + u"' can't be read, is empty or is too large.";
        return false;
    }
    mRows.push_back(std::move(row));
    return true;
}

bool TagChanges::Apply(Host& host, const std::u16string& file) const {
    if (mDeleteAll && !Delete(host, file, u"")) return false;
    return std::all_of(mDeletions.begin(), mDeletions.end(),
                       [&](const std::u16string& name) { return Delete(host, file, name); }) &&
           std::all_of(mRows.begin(), mRows.end(),
                       [&](const TextRow& row) { return Write(host, file, row); });
}
