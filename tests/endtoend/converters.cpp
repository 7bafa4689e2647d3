#include "endtoend/converters.h"

#include <filesystem>
#include <fstream>
#include <sstream>

namespace fs = std::filesystem;

namespace {

std::string CommandLineOf(const fs::path& process) {
    std::ostringstream text;
    text << std::ifstream(process / "cmdline", std::ios::binary).rdbuf();
    return text.str();
}

bool IsNumber(const std::string& name) {
    return name.find_first_not_of("0123456789") == std::string::npos;
}

}  // namespace

std::vector<int> ConvertersOf(const std::u16string& temporaries) {
    std::vector<int> converters;
    const std::string folder = fs::path(temporaries).filename().string();
    std::error_code none;
    for (const fs::directory_entry& entry : fs::directory_iterator("/proc", none)) {
        const std::string name = entry.path().filename().string();
        if (!IsNumber(name)) continue;
        const std::string line = CommandLineOf(entry.path());
        if (line.find("-qvcmd=") != std::string::npos && line.find(folder) != std::string::npos)
            converters.push_back(std::stoi(name));
    }
    return converters;
}
