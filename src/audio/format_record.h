// Format records of hosts and modules on their way in and out: 40 bytes each, whatever the record says.
#pragma once

#include <algorithm>
#include <cstring>
#include <new>

#include "audio/format.h"

// Takes a record of which no more than 40 bytes may be read; null is one of zeros. Raises when there is no
// memory for its tail, without which it would mean something else.
inline void TakeFormat(clFormatHolder& holder, const void* record) {
    if (!holder.setFormat(record, record ? sizeof(QvFormatExtensible) : 0)) throw std::bad_alloc();
}

// Fills 40 bytes: the record's first ones, and zeros behind a shorter record.
inline void GiveFormat(const clFormatHolder& holder, void* record) {
    const std::size_t whole = sizeof(QvFormat) + holder.format->cbSize;
    std::memset(record, 0, sizeof(QvFormatExtensible));
    std::memcpy(record, holder.format, std::min(whole, sizeof(QvFormatExtensible)));
}
