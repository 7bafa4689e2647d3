// A piece table: what is put in is kept in one growing store, and only the table says what stands where.
// Finding a place is a binary search; an insertion moves the entries behind it, of which there are few where
// TagLib works (at either end of a file, or from page to page onward through an Ogg file).
#include "modules/tags/tag_stream.h"

#include <algorithm>
#include <limits>

namespace {

constexpr std::uint64_t kFurthest = static_cast<std::uint64_t>(std::numeric_limits<long>::max());
constexpr std::uint32_t kCopyBytes = 1 << 20;

}  // namespace

clTagStream::clTagStream(clFileReader& file) : mFile(file) {
    if (file.Size() > 0) mPieces.push_back({0, file.Size(), false, 0});
}

bool clTagStream::IsWhole() const {
    return Size() <= kFurthest;
}

TagLib::FileName clTagStream::name() const {
    return TagLib::FileName("");
}

bool clTagStream::Fetch(const Piece& piece, std::uint64_t offset, char* to, std::uint32_t count) const {
    const std::uint64_t from = piece.source + offset;
    if (piece.isAdded) {
        mAdded.copy(to, count, static_cast<std::size_t>(from));
        return true;
    }
    // A few bytes come through the reader's window, more of them straight.
    if (count <= clFileReader::kWindowBytes) return mFile.Fetch(from, to, count);
    std::uint32_t got = 0;
    return mFile.Read(from, to, count, &got) && got == count;
}

TagLib::ByteVector clTagStream::readBlock(unsigned long length) {
    const std::uint64_t end = std::min(Size(), kFurthest);
    if (mPosition >= end) return TagLib::ByteVector();
    const auto wanted = static_cast<unsigned int>(
        std::min({std::uint64_t{length}, end - mPosition, std::uint64_t{0x7FFFFFFF}}));
    TagLib::ByteVector block(wanted, 0);
    auto piece = std::ranges::upper_bound(mPieces, mPosition, {}, &Piece::start) - 1;
    for (unsigned int done = 0; done < wanted; ++piece) {
        const std::uint64_t offset = mPosition - piece->start;
        const auto count =
            static_cast<std::uint32_t>(std::min(piece->length - offset, std::uint64_t{wanted - done}));
        if (!Fetch(*piece, offset, block.data() + done, count)) return TagLib::ByteVector();
        done += count;
        mPosition += count;
    }
    return block;
}

// The index of the piece that begins there, after cutting one in two if need be.
std::size_t clTagStream::SplitAt(std::uint64_t position) {
    const auto behind = std::ranges::lower_bound(mPieces, position, {}, &Piece::start);
    const auto index = static_cast<std::size_t>(behind - mPieces.begin());
    if (index == 0 || position >= Size() || (behind != mPieces.end() && behind->start == position))
        return index;
    Piece& first = mPieces[index - 1];
    Piece second = first;
    first.length = position - first.start;
    second.start = position;
    second.length -= first.length;
    second.source += first.length;
    mPieces.insert(behind, second);
    return index;
}

void clTagStream::Replace(std::uint64_t start, std::uint64_t length, const TagLib::ByteVector& data) {
    start = std::min(start, Size());
    const std::uint64_t end = start + std::min(length, Size() - start);
    if (start == end && data.isEmpty()) return;
    mIsChanged = true;
    const std::size_t first = SplitAt(start);
    const std::size_t last = SplitAt(end);
    mPieces.erase(mPieces.begin() + static_cast<std::ptrdiff_t>(first),
                  mPieces.begin() + static_cast<std::ptrdiff_t>(last));
    if (!data.isEmpty()) {
        mPieces.insert(mPieces.begin() + static_cast<std::ptrdiff_t>(first),
                       {start, data.size(), true, mAdded.size()});
        mAdded.append(data.data(), data.size());
    }
    if (data.size() == end - start) return;
    for (std::size_t i = first; i < mPieces.size(); ++i)
        mPieces[i].start = i == 0 ? 0 : mPieces[i - 1].start + mPieces[i - 1].length;
}

void clTagStream::writeBlock(const TagLib::ByteVector& data) {
    mPosition = std::min(mPosition, Size());
    Replace(mPosition, data.size(), data);
    mPosition += data.size();
}

void clTagStream::insert(const TagLib::ByteVector& data, unsigned long start, unsigned long replace) {
    Replace(start, replace, data);
    mPosition = std::min(std::uint64_t{start} + data.size(), Size());
}

void clTagStream::removeBlock(unsigned long start, unsigned long length) {
    Replace(start, length, TagLib::ByteVector());
}

void clTagStream::truncate(long length) {
    const std::uint64_t size = length > 0 ? static_cast<std::uint64_t>(length) : 0;
    if (size < Size()) Replace(size, Size() - size, TagLib::ByteVector());
}

void clTagStream::seek(long offset, Position from) {
    std::int64_t position = offset;
    if (from == Current) position += tell();
    if (from == End) position += length();
    mPosition = position > 0 ? static_cast<std::uint64_t>(position) : 0;
}

long clTagStream::tell() const {
    return static_cast<long>(std::min(mPosition, kFurthest));
}

long clTagStream::length() {
    return static_cast<long>(std::min(Size(), kFurthest));
}

bool clTagStream::WriteTo(clFileWriter& writer) const {
    std::vector<char> buffer(kCopyBytes);
    for (const Piece& piece : mPieces) {
        for (std::uint64_t done = 0; done < piece.length;) {
            const auto count =
                static_cast<std::uint32_t>(std::min<std::uint64_t>(kCopyBytes, piece.length - done));
            if (!Fetch(piece, done, buffer.data(), count) || !writer.Append(buffer.data(), count))
                return false;
            done += count;
        }
    }
    return true;
}
