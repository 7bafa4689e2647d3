#include "support/handle_gauge.h"

#include <algorithm>
#include <filesystem>
#include <iterator>

#include "platform/file.h"
#include "platform/pipe.h"

HandleGauge::HandleGauge() {
    platform::Handle ends[2] = {};
    platform::CreatePipe.Native()(&ends[0], &ends[1]);
    freshest = std::max(ends[0], ends[1]);
    for (const platform::Handle end : ends) platform::CloseHandle.Native()(end);

    std::error_code none;
    const std::filesystem::directory_iterator tasks("/proc/self/task", none);
    if (!none) threads = static_cast<std::size_t>(std::distance(begin(tasks), end(tasks)));
}
