// clFormatHolder: one audio format record and where it lives.
//
// A record is 18 bytes plus as many as its cbSize says; the extensible form keeps its real type there. The
// plain form stands inside the object, a longer one in a store of its own, and `format` names whichever is in
// use: never null, and moved by every operation here that replaces the record. Its fields may be written in
// place, cbSize excepted, which says how much memory stands behind it.
#pragma once

#include <cstddef>
#include <cstdint>

#include "foundation/byte_store.h"
#include "foundation/wide_string.h"
#include "quavermill/types.h"

class clFormatHolder {
  public:
    clFormatHolder() = default;
    explicit clFormatHolder(const QvFormat* source) { setFormat(source); }
    clFormatHolder(const clFormatHolder&) = delete;
    clFormatHolder& operator=(const clFormatHolder&) = delete;

    // Takes a copy of a whole record: 18 bytes and the cbSize that follow must be readable. The block
    // alignment and the byte rate of integer and float PCM are computed anew, whatever the source says, and
    // neither is 0 afterwards. The record that is held already is left as it stands. False when there is no
    // memory for the tail: the plain part is then kept alone.
    bool setFormat(const QvFormat* source);
    // The same for a record from somewhere else, of which only `available` bytes may be read: a cbSize that
    // claims more is lowered to what is there, and fields that are missing are 0. With nothing available the
    // source may be null.
    bool setFormat(const void* source, std::size_t available);

    // What the samples are, by the tag or, for an extensible record, by its SubFormat: one of the QV_FORMAT
    // values or a tag that is none of them. QV_FORMAT_EXTENSIBLE for a SubFormat that is unknown.
    std::uint32_t sampleType() const;
    bool IsExtensible() const { return Extension() != nullptr; }

    // Another container size, with what depends on it.
    void SetBits(std::uint16_t bits);
    // Another number of channels, with what depends on it: a mask that named other channels is cleared.
    void SetChannels(std::uint16_t channels);
    // Another rate, with what depends on it.
    void SetRate(std::uint32_t rate);
    // Relabels the samples as float or integer PCM and changes nothing else.
    void SetType(bool isFloat);
    // Computes the block alignment and the byte rate from the other fields, after one of them was written.
    void UpdateRates();

    // Makes the plain record of an extensible one, and is true; bytes behind the SubFormat stay as its tail.
    // False, and nothing happens, for a plain record or an unknown SubFormat.
    bool StripExtensible();

    // One line that names every field.
    XString formatDump() const;

    clByteStore formatStore;
    QvFormat inlineFormat = {};
    QvFormat* format = &inlineFormat;

  private:
    QvFormatExtensible* Extension() const;
    bool Take(const QvFormat& head, const std::uint8_t* tail);
    void Normalise();
};
