// clBlockCarry: a queue of bytes between steps that take different amounts: whole blocks go in, any number of
// bytes comes out.
//
// The waiting bytes stand in the queue's own store, or in a block that it has adopted and that its caller
// still holds: so a step that uses a whole block at once never copies it. Whoever lets a block be adopted
// calls Compact before that block goes.
//
//     carry.Append(block, true);
//     while (carry.held() >= step) Use(carry.Take(step));
//     carry.Compact(0);
//
// Where memory fails nothing raises.
#pragma once

#include <cstdint>

#include "audio/audio_block.h"

class clBlockCarry : public clFormatHolder {
  public:
    clBlockCarry() = default;

    // Puts a block's bytes behind those that wait, and takes its format over if that knows its depth. The
    // bytes are read from the start of the block's data, and its offset only shortens them. A block can only
    // be adopted by a queue that is empty; it is copied otherwise. False when there is no memory: what waited
    // still does, and the block is not taken. The bytes must not be the queue's own.
    bool Append(const clAudioBlock& block, bool adopt);
    // The first `count` of the waiting bytes, or all of them if there are fewer, under the queue's format.
    // They leave the queue, but stand where they are until the next Append or Compact.
    clAudioBlock& Take(std::uint32_t count);
    // The last `count` bytes that were taken wait again, in front of the others. Before the next Append or
    // Compact.
    void GiveBack(std::uint32_t count);
    // Brings the waiting bytes into the queue's own store and to its start. `extra` is room for bytes about
    // to come, made only if a block was adopted. Without memory for it an adopted block's bytes are lost, as
    // it is about to go.
    void Compact(std::uint32_t extra);
    // The same, but without memory all stands as it did: false. For who can still keep the adopted block.
    bool Own(std::uint32_t extra);
    void Clear();  // nothing waits

    std::uint32_t held() const { return heldBytes; }  // the bytes that wait

    clByteStore store;
    const std::uint8_t* data = nullptr;  // in `store` or adopted
    clAudioBlock view;                   // what Take hands out
    std::uint32_t heldBytes = 0;
    std::uint32_t offset = 0;  // of the waiting bytes in `data`
    std::uint8_t adopted = 0;

  private:
    bool Settle(std::uint64_t room);
};
