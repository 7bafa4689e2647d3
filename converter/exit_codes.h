// How Quavercore ends. The numbers are part of its interface: see docs/quavercore.md.
#pragma once

enum class ExitCode : int {
    kDone = 0,
    kFailed = 1,      // an effect is not there, refuses its settings or the format, or fails
    kBadCommand = 2,  // the command line or the command file can't be understood
    kCancelled = 3,
    kNoDecoder = 4,       // no decoder opens the source
    kEncoderRefused = 5,  // no such encoder, or it does not take the settings or the format
    kSourceDamaged = 6,   // part of the source's audio is missing or unreadable
    kOutputFailed = 7,    // the destination can't be written
    kNoEvents = 8,        // the host's events are not there
    kInternal = 9,        // out of memory, or a fault of a module or of the program itself
};
