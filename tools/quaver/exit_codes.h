// How quaver ends. The numbers are part of its interface: see docs/quaver.md.
#pragma once

enum class ExitCode : int {
    kDone = 0,
    kFailed = 1,  // what was asked for did not succeed; the reason is on standard error
    kUsage = 2,   // the command line can't be understood
    kRefused =
        3,  // nothing was begun: the destination exists, or is the source, or a name can't be passed on
    kCancelled = 4,   // interrupted; nothing of the destination is left
    kInternal = 5,    // out of memory, or the library could not be set up
    kSomeFailed = 6,  // of several files some failed, and the others are done
    kDamaged = 7,     // the file is damaged; what could be read of it was given
    kOutput = 8,      // standard output or the file to make could not be written
};
