#include "modules/tags/tag_editor.h"

std::unique_ptr<clTagEditor> OpenTagEditor(TagContainer container, clTagStream& stream, clFileReader& file) {
    switch (container) {
        case TagContainer::flac:
        case TagContainer::oggVorbis:
        case TagContainer::oggOpus:
            return OpenXiphEditor(container, stream);
        case TagContainer::mpeg:
            return OpenMpegEditor(stream);
        case TagContainer::wave:
            return OpenWaveEditor(stream, file);
        case TagContainer::aiff:
            return OpenAiffEditor(stream);
        case TagContainer::none:
            break;
    }
    return nullptr;
}
