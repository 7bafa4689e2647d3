#include "platform/posix/handle.h"

#include <fcntl.h>

#include "platform/error.h"
#include "platform/posix/native_error.h"

namespace platform::posix {

int RaiseDescriptor(int descriptor) {
    if (descriptor < 0 || descriptor >= kFirstDescriptor) return descriptor;
    const Descriptor low(descriptor);
    return fcntl(descriptor, F_DUPFD_CLOEXEC, kFirstDescriptor);
}

bool FailWrongKind() {
    return Fail(kErrorInvalidHandle);
}

}  // namespace platform::posix
