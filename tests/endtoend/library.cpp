#include "endtoend/library.h"

#include <filesystem>

Library::Library() = default;

Library::~Library() {
    if (mModule) platform::FreeLibrary(mModule);
}

std::u16string Library::File() {
    return std::filesystem::absolute(QV_LIBRARY_FILE).make_preferred().u16string();
}
