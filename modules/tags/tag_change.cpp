// The file itself is only read. The changed one is written beside it under a temporary name, is then opened
// anew and must show the wanted tags and the same audio; only after that it takes the file's name. So whatever
// fails on the way, and wherever the program is stopped, the old file or the new one is there, whole.
//
// The cost is one writing and two readings of the file, besides a copy made by the system, which is there
// for the permissions that it brings along.
#include "modules/tags/tag_change.h"

#include <algorithm>
#include <tuple>

#include "foundation/joined.h"
#include "foundation/output_file.h"
#include "foundation/paths.h"
#include "modules/support/chunk_walk.h"
#include "modules/support/file_writer.h"
#include "modules/support/little_endian.h"
#include "modules/tags/audio_ranges.h"
#include "modules/tags/id3_names.h"
#include "modules/tags/picture_kinds.h"
#include "modules/tags/tag_rules.h"
#include "platform/error.h"
#include "platform/file.h"

namespace {

// The largest size that the header of the whole can say.
constexpr std::uint64_t kLargestChunked = 0xFFFFFFFF;

bool IsChunked(TagContainer container) {
    return container == TagContainer::wave || container == TagContainer::aiff;
}

// Its sizes stand elsewhere, where TagLib doesn't know of them.
bool IsRf64(clFileReader& file) {
    std::uint8_t head[4];
    return file.Fetch(0, head, sizeof head) &&
           (Get32(head) == ChunkId("RF64") || Get32(head) == ChunkId("BW64"));
}

bool HasId3(TagContainer container) {
    return container == TagContainer::mpeg || IsChunked(container);
}

// What ID3 makes of genres is made of them before, so that they read back as they were written.
void CleanGenres(TagSet& rows) {
    const TagSet::Values genres = rows.At(u"GENRE");
    rows.text.erase(u"GENRE");
    for (const std::u16string& genre : genres) rows.Add(u"GENRE", id3::Genre(genre));
}

// The order of pictures is the container's matter.
TagSet Sorted(TagSet set) {
    std::ranges::sort(set.pictures, {}, [](const TagPicture& picture) {
        return std::tie(picture.kind, picture.description, picture.bytes);
    });
    return set;
}

std::set<std::u16string> NamesOf(const TagSet& rows) {
    std::set<std::u16string> names;
    for (const auto& [name, values] : rows.text) names.insert(name);
    return names;
}

XString LongForm(const char16_t* path) {
    return paths::ToLongPath(path, paths::kOtherLimit);
}

}  // namespace

bool clTagChange::Fail(const char16_t* trouble) const {
    mLog.Error(mPath, Joined({u"its tags are not changed: ", trouble}).Text());
    return false;
}

bool clTagChange::FailWithError(const char16_t* trouble, std::uint32_t error) const {
    return Fail(Joined({trouble, u" (error ", XString::FromUInt64(error).Text(), u")"}).Text());
}

bool clTagChange::Open() {
    const std::uint32_t attributes = platform::GetFileAttributesW(LongForm(mPath).Text());
    if (attributes != platform::kInvalidAttributes && (attributes & platform::kAttributeReadOnly) != 0)
        return Fail(u"it is read-only");
    if (!mFile.Open(mPath)) return FailWithError(u"it can't be opened", mFile.Error());
    if (mContainer == TagContainer::none) return Fail(u"this kind of file has none");
    if (mContainer == TagContainer::wave && IsRf64(mFile)) return Fail(u"those of RF64 files are only read");
    const bool hasAudio = FindAudio(mContainer, mFile) != nullptr;
    if (hasAudio) {
        mStream = std::make_unique<clTagStream>(mFile);
        if (!mStream->IsWhole()) return Fail(u"it is too large");
        mEditor = OpenTagEditor(mContainer, *mStream, mFile);
        if (mEditor->IsValid()) mFields = mEditor->Read();
    }
    if (mFile.Error() != 0) return FailWithError(u"it can't be read", mFile.Error());
    if (!hasAudio || !mEditor->IsValid())
        return Fail(u"it is damaged, or of another kind than its name says");
    return true;
}

// The fields with those of some rows exchanged. A field that stands for several rows, such as a number with a
// total, keeps what the others said.
TagSet clTagChange::Replaced(const std::set<std::u16string>& names, const TagSet& rows) const {
    std::set<std::u16string> groups;
    for (const std::u16string& name : names) groups.insert(GroupOfName(name));
    TagSet affected = rows;
    for (const auto& [name, values] : RowsOfFields(mContainer, mFields).text)
        if (groups.contains(GroupOfName(name)) && !names.contains(name)) affected.text[name] = values;
    TagSet next = mFields;
    std::erase_if(next.text, [&](const auto& field) { return groups.contains(GroupOfName(field.first)); });
    next.text.merge(FieldsOfRows(mContainer, affected, mPath, mLog).text);
    std::erase_if(next.pictures, [&](const TagPicture& picture) {
        return std::ranges::find(rows.pictures, picture.kind, &TagPicture::kind) != rows.pictures.end();
    });
    next.pictures.insert(next.pictures.end(), rows.pictures.begin(), rows.pictures.end());
    return next;
}

bool clTagChange::Write(const TagSet& rows) {
    if (!Open()) return false;
    TagSet wanted = RowsOfFields(mContainer, rows);
    if (HasId3(mContainer)) CleanGenres(wanted);
    // What the container can hold of them, as it will read back.
    const TagSet held = RowsOfFields(mContainer, FieldsOfRows(mContainer, wanted, mPath, mLog));
    if (held.IsEmpty()) return Fail(u"it can hold none of these");
    return Apply(Replaced(NamesOf(held), held));
}

bool clTagChange::Delete(const std::u16string& name) {
    if (!Open()) return false;
    const std::optional<std::int32_t> kind = PictureKind(name);
    if (!kind) {
        TagSet any;
        any.Add(name, u"0");
        return Apply(Replaced(NamesOf(RowsOfFields(mContainer, any)), TagSet()));
    }
    TagSet next = mFields;
    std::erase_if(next.pictures, [&](const TagPicture& picture) { return picture.kind == *kind; });
    return Apply(next);
}

bool clTagChange::DeleteAll() {
    if (!Open()) return false;
    mEditor->Clear();
    return Commit(TagSet());
}

bool clTagChange::Apply(const TagSet& next) {
    if (next == mFields) return true;
    std::set<std::u16string> names = NamesOf(mFields);
    names.merge(NamesOf(next));
    for (const std::u16string& name : names)
        if (next.At(name) != mFields.At(name)) mEditor->SetText(name, next.At(name));
    if (next.pictures != mFields.pictures) mEditor->SetPictures(next.pictures);
    return Commit(RowsOfFields(mContainer, next));
}

bool clTagChange::Commit(const TagSet& expected) {
    const bool isSaved = mEditor->Save();
    if (mFile.Error() != 0) return FailWithError(u"it can't be read", mFile.Error());
    const bool isAsBefore = !mStream->IsChanged();
    if (!isSaved || (isAsBefore && RowsOfFields(mContainer, mFields) != expected))
        return Fail(u"they can't be put into it");
    if (isAsBefore) return true;
    if (IsChunked(mContainer) && mStream->Size() > kLargestChunked)
        return Fail(u"with them it would be larger than this kind of file can be");
    XOutputFile output{mPath};
    if (!output.Create()) return FailWithError(u"no file can be made beside it", platform::GetLastError());
    if (!Build(output.TemporaryName().c_str()) || !Verify(output.TemporaryName().c_str(), expected))
        return false;
    mFile.Close();
    if (!output.Commit()) return FailWithError(u"it can't be replaced", platform::GetLastError());
    return true;
}

bool clTagChange::Build(const char16_t* temporary) {
    const XString from = LongForm(mPath), to = LongForm(temporary);
    const std::uint32_t attributes = platform::GetFileAttributesW(from.Text());
    // The copy's permissions stay when it is written over. A hidden one could not be.
    if (!platform::CopyFileW(from.Text(), to.Text(), false) ||
        !platform::SetFileAttributesW(to.Text(), platform::kAttributeNormal))
        return FailWithError(u"the new file can't be written", platform::GetLastError());
    clFileWriter writer;
    const bool isWritten = writer.Create(temporary) && mStream->WriteTo(writer) && writer.Flush();
    const bool isClosed = writer.Close();
    if (mFile.Error() != 0) return FailWithError(u"it can't be read", mFile.Error());
    if (!isWritten || !isClosed) return FailWithError(u"the new file can't be written", writer.Error());
    if (attributes != platform::kInvalidAttributes) platform::SetFileAttributesW(to.Text(), attributes);
    return true;
}

bool clTagChange::Verify(const char16_t* temporary, const TagSet& expected) {
    clFileReader made;
    if (!made.Open(temporary)) return FailWithError(u"the new file can't be opened", made.Error());
    clTagStream stream(made);
    const auto editor = OpenTagEditor(mContainer, stream, made);
    const bool isGood =
        editor->IsValid() && Sorted(RowsOfFields(mContainer, editor->Read())) == Sorted(expected);
    const auto before = FindAudio(mContainer, mFile);
    const auto after = FindAudio(mContainer, made);
    const bool isSame = before && after && IsSameAudio(*before, mFile, *after, made) && before->IsSound();
    if (made.Error() != 0) return FailWithError(u"the new file can't be read", made.Error());
    if (mFile.Error() != 0) return FailWithError(u"it can't be read", mFile.Error());
    if (!isGood) return Fail(u"what was written does not read back as it should");
    if (!isSame) return Fail(u"its audio would not have stayed the same");
    return true;
}
