// Anonymous pipes and handles made for somebody else.
#pragma once

#include <cstdint>

#include "platform/operation.h"
#include "platform/types.h"

namespace platform {

// Makes a pipe of the system's default size whose two ends no child inherits. Both outputs are kept as they
// were on failure.
extern Operation<bool(Handle* readEnd, Handle* writeEnd)> CreatePipe;

// Stores how many bytes a read would find, without blocking. Fails with kErrorBrokenPipe when the pipe is
// empty and all its writers are gone; *available is 0 then.
extern Operation<bool(Handle readEnd, std::uint32_t* available)> PeekNamedPipe;

// Makes an inheritable handle of the same access for the same object and closes the source, also on failure
// of the first half (as the close-source flag does on Windows). POSIX marks the descriptor as fit for a
// child: only a handle named in a CreateProcessW call reaches one.
extern Operation<bool(Handle source, Handle* duplicate)> DuplicateHandle;

}  // namespace platform
