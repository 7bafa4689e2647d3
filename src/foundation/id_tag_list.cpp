#include "foundation/id_tag_list.h"

#include <cstring>
#include <limits>
#include <memory>
#include <new>
#include <string>

namespace {

constexpr std::int64_t kIntBytes = 4;
constexpr std::int64_t kUnitBytes = 2;

std::int64_t FlatSize(const IDTagRow& row) {
    return kIntBytes + kUnitBytes * (std::int64_t{row.name.Count()} + row.value.Count()) + row.art.Size();
}

class FlatWriter {
  public:
    explicit FlatWriter(std::uint8_t* at) : mAt(at) {}

    void PutInt(std::int64_t value) {
        for (int shift = 0; shift < 32; shift += 8) *mAt++ = static_cast<std::uint8_t>(value >> shift);
    }
    void PutText(const XString& text) {
        PutBytes(text.Text(), static_cast<std::size_t>(kUnitBytes) * static_cast<std::size_t>(text.Count()));
    }
    void PutBytes(const void* bytes, std::size_t size) {
        if (size > 0) std::memcpy(mAt, bytes, size);
        mAt += size;
    }

  private:
    std::uint8_t* mAt;
};

// Reads forward and never past the end; what is not there whole is not read at all.
class FlatReader {
  public:
    FlatReader(const void* data, std::int64_t size)
        : mData(static_cast<const std::uint8_t*>(data)), mSize(size) {}

    std::int64_t Position() const { return mPosition; }
    std::int64_t Left() const { return mSize - mPosition; }
    const std::uint8_t* At() const { return mData + mPosition; }
    void GoTo(std::int64_t position) { mPosition = position; }

    bool GetInt(std::int32_t& value) {
        if (Left() < kIntBytes) return false;
        std::uint32_t bits = 0;
        for (int shift = 0; shift < 32; shift += 8) bits |= std::uint32_t{mData[mPosition++]} << shift;
        value = static_cast<std::int32_t>(bits);
        return true;
    }
    // A text stands at any byte, so it is copied to where units may stand.
    bool GetText(XString& text) {
        std::int64_t bytes = 0;
        while (mPosition + bytes + kUnitBytes <= mSize && (At()[bytes] | At()[bytes + 1]))
            bytes += kUnitBytes;
        if (mPosition + bytes + kUnitBytes > mSize) return false;
        std::u16string units(static_cast<std::size_t>(bytes / kUnitBytes), u'\0');
        std::memcpy(units.data(), At(), static_cast<std::size_t>(bytes));
        text.Assign(units.c_str(), 0);
        mPosition += bytes + kUnitBytes;
        return true;
    }

  private:
    const std::uint8_t* mData;
    std::int64_t mSize;
    std::int64_t mPosition = 0;
};

// False when nothing of the row can be kept. `more` tells whether another row can follow.
bool ReadRow(FlatReader& flat, IDTagRow& row, bool& more) {
    const std::int64_t start = flat.Position();
    std::int32_t size = 0;
    more = false;
    if (!flat.GetInt(size) || size < 0 || start + size > flat.Position() + flat.Left()) return false;
    const std::int64_t end = start + size;
    if (!flat.GetText(row.name)) return false;
    if (flat.Position() >= end || !flat.GetText(row.value) || flat.Position() > end) return true;
    const std::int64_t artSize = end - flat.Position();
    if (artSize > 0 && !row.art.Assign(flat.At(), static_cast<std::uint32_t>(artSize), 0))
        throw std::bad_alloc();
    flat.GoTo(end);
    more = flat.Left() > 0;
    return true;
}

}  // namespace

clIDTagList::~clIDTagList() {
    Clear();
}

void clIDTagList::Add(const char16_t* name, const char16_t* value) {
    auto row = std::make_unique<IDTagRow>();
    row->name.Assign(name, 0);
    row->value.Assign(value, 0);
    Append(std::move(row));
}

void clIDTagList::AddBinary(const char16_t* name, const char16_t* value, const void* data,
                            std::uint32_t size) {
    auto row = std::make_unique<IDTagRow>();
    row->name.Assign(name, 0);
    row->value.Assign(value, 0);
    if (!row->art.Assign(data, size, 0)) throw std::bad_alloc();
    Append(std::move(row));
}

void clIDTagList::Append(std::unique_ptr<IDTagRow> row) {
    mRows.Append(row.get());
    mCurrent = row.release();
}

void clIDTagList::RemoveAt(std::int32_t index) {
    if (index < 0 || index >= Count()) return;
    IDTagRow* const row = &At(index);
    if (mCurrent == row) mCurrent = nullptr;
    mRows.RemoveAt(index);
    delete row;
}

void clIDTagList::Clear() {
    for (std::int32_t index = 0; index < Count(); ++index) delete &At(index);
    mRows.Clear();
    mCurrent = nullptr;
}

IDTagRow* clIDTagList::Fetch(std::int32_t index) {
    if (index < 0 || index >= Count()) return nullptr;
    return mCurrent = &At(index);
}

bool clIDTagList::Serialise(clByteStore& flat) const {
    std::int64_t total = kIntBytes;
    for (std::int32_t index = 0; index < Count(); ++index) {
        const std::int64_t size = FlatSize(At(index));
        if (size > std::numeric_limits<std::int32_t>::max()) return false;
        total += size;
    }
    if (total > std::numeric_limits<std::uint32_t>::max()) return false;
    if (!flat.Resize(static_cast<std::uint32_t>(total), false, 0)) return false;

    FlatWriter writer(flat.Data());
    writer.PutInt(Count());
    for (std::int32_t index = 0; index < Count(); ++index) {
        const IDTagRow& row = At(index);
        writer.PutInt(FlatSize(row));
        writer.PutText(row.name);
        writer.PutText(row.value);
        writer.PutBytes(row.art.Data(), row.art.Size());
    }
    return true;
}

void clIDTagList::Deserialise(const void* data, std::int64_t size) {
    Clear();
    std::int32_t count = 0;
    FlatReader flat(data, size);
    if (!data || size <= kIntBytes || !flat.GetInt(count)) return;
    for (bool more = true; more && Count() < count;) {
        auto row = std::make_unique<IDTagRow>();
        if (!ReadRow(flat, *row, more)) return;
        Append(std::move(row));
    }
}
