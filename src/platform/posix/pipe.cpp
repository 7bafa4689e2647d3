// Anonymous pipes. Both ends carry the close-on-exec mark all their life: what a child is to have is named
// when it is started and copied for it then.
#include "platform/pipe.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>

#include "platform/error.h"
#include "platform/posix/handle.h"
#include "platform/posix/native_error.h"

namespace platform {

using namespace posix;

namespace {

bool Create(Handle* readEnd, Handle* writeEnd) {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) return FailWithErrno();
    Descriptor reader(ends[0]), writer(ends[1]);
    reader = Descriptor(RaiseDescriptor(reader.Release()));
    writer = Descriptor(RaiseDescriptor(writer.Release()));
    if (!reader || !writer) return FailWithErrno();
    *readEnd = reader.Release();
    *writeEnd = writer.Release();
    return true;
}

// Only a pipe that is empty at the moment its writers are seen to be gone is broken:
// what they left comes first.
bool Peek(Handle readEnd, std::uint32_t* available) {
    *available = 0;
    pollfd state{DescriptorOf(readEnd), POLLIN, 0};
    if (state.fd < 0) return Fail(kErrorInvalidHandle);
    if (Retry([&] { return poll(&state, 1, 0); }) < 0) return FailWithErrno();
    if (state.revents & POLLNVAL) return Fail(kErrorInvalidHandle);
    if (!(state.revents & POLLIN)) return state.revents & (POLLHUP | POLLERR) ? Fail(kErrorBrokenPipe) : true;
    int waiting = 0;
    if (ioctl(state.fd, FIONREAD, &waiting) != 0) return FailWithErrno();
    *available = static_cast<std::uint32_t>(waiting);
    return true;
}

bool Duplicate(Handle source, Handle* duplicate) {
    const int descriptor = DescriptorOf(source);
    const int copy = fcntl(descriptor, F_DUPFD_CLOEXEC, kFirstDescriptor);
    if (copy < 0) FailWithErrno();
    if (descriptor >= kFirstDescriptor) close(descriptor);
    if (copy >= 0) *duplicate = copy;
    return copy >= 0;
}

}  // namespace

constinit Operation<bool(Handle*, Handle*)> CreatePipe{&Create};
constinit Operation<bool(Handle, std::uint32_t*)> PeekNamedPipe{&Peek};
constinit Operation<bool(Handle, Handle*)> DuplicateHandle{&Duplicate};

}  // namespace platform
