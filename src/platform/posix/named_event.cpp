// Named events: a small file in shared memory per name, mapped by everyone who holds the event.
//
// Two bytes of the file are locked, by locks that belong to an open file description and so end with it
// however its process ends. The first is the gate: whoever creates, opens or closes holds it alone. As it
// is in the file itself, one must see behind it that the file still has its name, and begin again when it
// has not. The second is held, shared, by every handle. Who is behind the gate and could have it alone is
// the only one: the file was just made or is what killed processes left, and the event in it is a new one.
//
// The last handle to close takes the name away. What killed processes left under other names is swept up
// once in the life of a process that creates named events.
#include <dirent.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>

#include <mutex>
#include <utility>

#include "platform/error.h"
#include "platform/posix/event.h"
#include "platform/posix/native_error.h"
#include "platform/posix/native_file.h"
#include "platform/posix/safe_name.h"

namespace platform::posix {

namespace {

constexpr off_t kGate = 0, kHolders = 1;

bool Lock(int file, off_t range, short type, int command) {
    struct flock lock {};
    lock.l_type = type;
    lock.l_whence = SEEK_SET;
    lock.l_start = range;
    lock.l_len = 1;
    return Retry([&] { return fcntl(file, command, &lock); }) == 0;
}

bool LockAlone(int file) {
    return Lock(file, kHolders, F_WRLCK, F_OFD_SETLK);
}
bool LockShared(int file) {
    return Lock(file, kHolders, F_RDLCK, F_OFD_SETLK);
}

class Gate {
  public:
    explicit Gate(int file) : mFile(file), mPassed(Lock(file, kGate, F_WRLCK, F_OFD_SETLKW)) {}
    ~Gate() {
        if (mPassed) Lock(mFile, kGate, F_UNLCK, F_OFD_SETLK);
    }
    Gate(const Gate&) = delete;
    Gate& operator=(const Gate&) = delete;
    explicit operator bool() const { return mPassed; }

  private:
    int mFile;
    bool mPassed;
};

std::string Folder() {
    const char* const shared = "/dev/shm/";
    return access(shared, W_OK | X_OK) == 0 ? shared : "/tmp/";
}

std::string Prefix() {
    return "quavermill-" + std::to_string(geteuid()) + "-";
}

// The file may be used if it is a plain one, this user's own and nobody else's to write to.
bool IsOurs(const struct stat& state) {
    return S_ISREG(state.st_mode) && state.st_uid == geteuid() && (state.st_mode & 077) == 0;
}

bool StillHasName(int file, const std::string& path) {
    struct stat own, named;
    return fstat(file, &own) == 0 && lstat(path.c_str(), &named) == 0 && own.st_ino == named.st_ino &&
           own.st_dev == named.st_dev;
}

Descriptor OpenFile(const std::string& path, int flags) {
    Descriptor file(Retry([&] { return open(path.c_str(), flags | O_RDWR | O_CLOEXEC | O_NOFOLLOW, 0600); }));
    struct stat state;
    if (file && fstat(file.Get(), &state) == 0 && IsOurs(state)) return file;
    if (file) errno = EACCES;
    return {};
}

// The event's word in memory that is shared with everyone who maps the file; none when that failed.
class Mapping {
  public:
    explicit Mapping(int file) {
        void* const memory = mmap(nullptr, sizeof(EventWord), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
        if (memory != MAP_FAILED) mWord = static_cast<EventWord*>(memory);
    }
    Mapping(Mapping&& other) noexcept : mWord(std::exchange(other.mWord, nullptr)) {}
    Mapping& operator=(Mapping&&) = delete;
    ~Mapping() {
        if (mWord) munmap(mWord, sizeof(EventWord));
    }
    EventWord* Word() const { return mWord; }

  private:
    EventWord* mWord = nullptr;
};

class NamedEvent : public Event {
  public:
    NamedEvent(Descriptor&& file, std::string&& path, Mapping&& mapping)
        : Event(mapping.Word()),
          mFile(std::move(file)),
          mPath(std::move(path)),
          mMapping(std::move(mapping)) {}
    // The locks are given up by hand: a fork of the host without an exec would keep the
    // descriptor, and them, alive.
    ~NamedEvent() override {
        const int file = mFile.Get();
        const Gate gate(file);
        if (gate && LockAlone(file) && StillHasName(file, mPath)) unlink(mPath.c_str());
        Lock(file, kHolders, F_UNLCK, F_OFD_SETLK);
    }

  private:
    Descriptor mFile;
    std::string mPath;
    Mapping mMapping;
};

// Writing the first word also takes the memory for it, so that a full file system is an
// error now and no fault later.
bool MakeNew(int file) {
    constexpr std::uint32_t kNotSet = 0;
    return pwrite(file, &kNotSet, sizeof kNotSet, 0) == sizeof kNotSet;
}

// Null with errno when it can't be mapped; `file` stays the caller's then, and when there is no memory.
std::unique_ptr<Event> Map(Descriptor& file, const std::string& path) {
    struct stat state;
    if (fstat(file.Get(), &state) != 0) return nullptr;
    if (state.st_size < static_cast<off_t>(sizeof(EventWord))) {
        errno = EIO;
        return nullptr;
    }
    Mapping mapping(file.Get());
    if (!mapping.Word()) return nullptr;
    return std::make_unique<NamedEvent>(std::move(file), std::string(path), std::move(mapping));
}

enum class Attempt { kDone, kAgain };

// Behind the gate of the file that has the name. The event stays null, with errno, on failure.
void AttachToFile(Descriptor& file, const std::string& path, bool create, std::unique_ptr<Event>* event) {
    const bool isNew = LockAlone(file.Get());
    if (isNew && !create) {
        errno = ENOENT;
    } else if ((!isNew || MakeNew(file.Get())) && LockShared(file.Get())) {
        *event = Map(file, path);
    }
    const int number = errno;
    if (*event) Fail(isNew ? kErrorSuccess : kErrorAlreadyExists);
    if (!*event && isNew) unlink(path.c_str());
    errno = number;
}

// Asks for another attempt when the file lost its name while the gate was waited for.
Attempt TryAttach(const std::string& path, bool create, std::unique_ptr<Event>* event) {
    Descriptor file = OpenFile(path, create ? O_CREAT : 0);
    if (!file) return Attempt::kDone;
    const Gate gate(file.Get());
    if (!gate) return Attempt::kDone;
    if (!StillHasName(file.Get(), path)) return Attempt::kAgain;
    AttachToFile(file, path, create, event);
    return Attempt::kDone;
}

std::unique_ptr<Event> Attach(const std::string& name, bool create) {
    const std::string path = Folder() + Prefix() + SafeName(name);
    std::unique_ptr<Event> event;
    while (TryAttach(path, create, &event) == Attempt::kAgain) {
    }
    if (!event) FailWithErrno();
    return event;
}

void SweepOne(const std::string& path) {
    const Descriptor file = OpenFile(path, 0);
    if (!file || !Lock(file.Get(), kGate, F_WRLCK, F_OFD_SETLK)) return;
    if (StillHasName(file.Get(), path) && LockAlone(file.Get())) unlink(path.c_str());
}

void Sweep() {
    const std::string folder = Folder(), prefix = Prefix();
    const std::unique_ptr<DIR, int (*)(DIR*)> entries(opendir(folder.c_str()), &closedir);
    while (const dirent* entry = entries ? readdir(entries.get()) : nullptr) {
        if (std::string_view(entry->d_name).starts_with(prefix)) SweepOne(folder + entry->d_name);
    }
}

}  // namespace

std::unique_ptr<Event> CreateNamedEvent(const std::string& name) {
    static std::once_flag swept;
    std::call_once(swept, &Sweep);
    return Attach(name, true);
}

std::unique_ptr<Event> OpenNamedEvent(const std::string& name) {
    return Attach(name, false);
}

}  // namespace platform::posix
