#include "platform/posix/tasks.h"

#include <dirent.h>
#include <stdlib.h>

#include <cerrno>
#include <memory>
#include <string>

namespace platform::posix {

bool ForEachTask(pid_t process, const std::function<bool(pid_t task)>& apply) {
    const std::string folder = "/proc/" + std::to_string(process) + "/task";
    const std::unique_ptr<DIR, int (*)(DIR*)> entries(opendir(folder.c_str()), &closedir);
    if (!entries) return apply(process);
    while (const dirent* entry = readdir(entries.get())) {
        const pid_t task = atoi(entry->d_name);  // 0 for the folder's two entries that are no thread
        if (task > 0 && !apply(task) && errno != ESRCH) return false;
    }
    return true;
}

}  // namespace platform::posix
