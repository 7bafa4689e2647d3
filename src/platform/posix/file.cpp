// Files by handle: a handle is a descriptor, and every operation one system call, repeated where a signal
// of the host cut it short.
//
// A write to a pipe that nobody reads raises SIGPIPE, whose action belongs to the host. It is held back
// for this thread during the write and taken away again if the write is what raised it; the host's own
// settings are not touched.
#include "platform/file.h"

#include <fcntl.h>
#include <poll.h>
#include <pthread.h>
#include <signal.h>
#include <time.h>

#include "platform/error.h"
#include "platform/posix/handle.h"
#include "platform/posix/native_error.h"
#include "platform/posix/native_file.h"
#include "platform/posix/native_text.h"

namespace platform {

using namespace posix;

namespace {

class PipeSignalGuard {
  public:
    PipeSignalGuard() {
        sigemptyset(&mPipe);
        sigaddset(&mPipe, SIGPIPE);
        sigset_t pending;
        sigpending(&pending);
        mWasPending = sigismember(&pending, SIGPIPE) == 1;
        pthread_sigmask(SIG_BLOCK, &mPipe, &mFormer);
    }
    ~PipeSignalGuard() {
        const int error = errno;
        if (mRaised && !mWasPending) {
            const timespec now{};
            Retry([&] { return sigtimedwait(&mPipe, nullptr, &now); });
        }
        pthread_sigmask(SIG_SETMASK, &mFormer, nullptr);
        errno = error;
    }
    PipeSignalGuard(const PipeSignalGuard&) = delete;
    PipeSignalGuard& operator=(const PipeSignalGuard&) = delete;

    void Raised() { mRaised = true; }

  private:
    sigset_t mPipe, mFormer;
    bool mWasPending;
    bool mRaised = false;
};

// Waits for a descriptor that somebody else made non-blocking. False when it was not that that failed.
bool WaitUntilReady(int descriptor, short events) {
    if (errno != EAGAIN) return false;
    pollfd ready{descriptor, events, 0};
    return Retry([&] { return poll(&ready, 1, -1); }) > 0;
}

// Returns the bytes written; errno tells why they are fewer than asked for.
std::size_t WriteFully(int descriptor, const char* bytes, std::size_t count) {
    std::size_t written = 0;
    while (written < count) {
        const ssize_t step = Retry([&] { return write(descriptor, bytes + written, count - written); });
        if (step >= 0) {
            written += static_cast<std::size_t>(step);
        } else if (!WaitUntilReady(descriptor, POLLOUT)) {
            break;
        }
    }
    return written;
}

bool WriteGuarded(int descriptor, const void* buffer, std::size_t count, std::size_t* written) {
    *written = 0;
    struct stat state;
    if (fstat(descriptor, &state) != 0) return false;
    const char* const bytes = static_cast<const char*>(buffer);
    if (S_ISREG(state.st_mode)) {
        *written = WriteFully(descriptor, bytes, count);
        return *written == count;
    }
    PipeSignalGuard guard;
    *written = WriteFully(descriptor, bytes, count);
    if (*written < count && errno == EPIPE) guard.Raised();
    return *written == count;
}

bool Write(Handle file, const void* buffer, std::uint32_t count, std::uint32_t* written) {
    std::size_t done = 0;
    const bool complete = WriteGuarded(DescriptorOf(file), buffer, count, &done);
    *written = static_cast<std::uint32_t>(done);
    return complete ? true : FailWithErrno();
}

ssize_t ReadOnce(int descriptor, char* bytes, std::size_t count) {
    ssize_t result;
    do {
        result = Retry([&] { return read(descriptor, bytes, count); });
    } while (result < 0 && WaitUntilReady(descriptor, POLLIN));
    return result;
}

// A file is read until the count is reached or it ends; a pipe gives what it has, and nothing only when its
// writers are gone. -1 with errno on failure.
ssize_t ReadFully(int descriptor, char* bytes, std::size_t count) {
    std::size_t done = 0;
    for (;;) {
        const ssize_t step = ReadOnce(descriptor, bytes + done, count - done);
        if (step < 0) return -1;
        done += static_cast<std::size_t>(step);
        if (done == count) break;
        struct stat state;
        if (fstat(descriptor, &state) != 0) return -1;
        if (step == 0 && (S_ISFIFO(state.st_mode) || S_ISSOCK(state.st_mode))) {
            errno = EPIPE;
            return -1;
        }
        if (step == 0 || !S_ISREG(state.st_mode)) break;
    }
    return static_cast<ssize_t>(done);
}

bool Read(Handle file, void* buffer, std::uint32_t count, std::uint32_t* got) {
    const ssize_t result = ReadFully(DescriptorOf(file), static_cast<char*>(buffer), count);
    *got = result > 0 ? static_cast<std::uint32_t>(result) : 0;
    return result >= 0 ? true : FailWithErrno();
}

int OpenFlags(std::uint32_t access, std::uint32_t disposition) {
    const bool writes = access & kGenericWrite;
    int flags = O_CLOEXEC | O_NOCTTY | (!writes ? O_RDONLY : access & kGenericRead ? O_RDWR : O_WRONLY);
    if (disposition == kCreateNew) flags |= O_CREAT | O_EXCL;
    if (disposition == kCreateAlways) flags |= O_CREAT | O_TRUNC;
    return flags;
}

bool IsFolder(int descriptor) {
    struct stat state;
    return fstat(descriptor, &state) == 0 && S_ISDIR(state.st_mode);
}

Handle Open(const char16_t* path, std::uint32_t access, std::uint32_t, std::uint32_t disposition,
            std::uint32_t) {
    const std::string name = Narrow(path);
    const bool changes = (access & kGenericWrite) || disposition == kCreateAlways;
    if (changes && disposition != kCreateNew && IsReadOnly(name)) {
        Fail(kErrorAccessDenied);
        return kInvalidHandle;
    }
    const int flags = OpenFlags(access, disposition);
    Descriptor file(RaiseDescriptor(Retry([&] { return open(name.c_str(), flags, 0666); })));
    if (!file) {
        errno == EEXIST ? Fail(kErrorFileExists) : FailOnPath(name);
        return kInvalidHandle;
    }
    if (IsFolder(file.Get())) {
        Fail(kErrorAccessDenied);
        return kInvalidHandle;
    }
    return file.Release();
}

bool Seek(Handle file, std::int64_t distance) {
    return lseek(DescriptorOf(file), distance, SEEK_SET) >= 0 ? true : FailWithErrno();
}

bool Size(Handle file, std::int64_t* size) {
    struct stat state;
    if (fstat(DescriptorOf(file), &state) != 0) return FailWithErrno();
    *size = state.st_size;
    return true;
}

bool Flush(Handle file) {
    return Retry([&] { return fsync(DescriptorOf(file)); }) == 0 ? true : FailWithErrno();
}

// Whoever was interrupted while closing has closed all the same; a second attempt could hit somebody else's
// descriptor. The program's own three streams are nobody's to close.
bool Close(Handle handle) {
    if (HandleObject* const object = ObjectOf(handle)) {
        delete object;
        return true;
    }
    if (DescriptorOf(handle) < kFirstDescriptor) return Fail(kErrorInvalidHandle);
    return close(DescriptorOf(handle)) == 0 || errno == EINTR ? true : FailWithErrno();
}

}  // namespace

constinit Operation<Handle(const char16_t*, std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t)>
    CreateFileW{&Open};
constinit Operation<bool(Handle, void*, std::uint32_t, std::uint32_t*)> ReadFile{&Read};
constinit Operation<bool(Handle, const void*, std::uint32_t, std::uint32_t*)> WriteFile{&Write};
constinit Operation<bool(Handle, std::int64_t)> SetFilePointerEx{&Seek};
constinit Operation<bool(Handle, std::int64_t*)> GetFileSizeEx{&Size};
constinit Operation<bool(Handle)> FlushFileBuffers{&Flush};
constinit Operation<bool(Handle)> CloseHandle{&Close};

bool posix::WriteAll(int descriptor, const void* buffer, std::size_t count) {
    std::size_t written = 0;
    return WriteGuarded(descriptor, buffer, count, &written);
}

}  // namespace platform
