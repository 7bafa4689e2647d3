#include "encoder_choice.h"

#include <algorithm>

namespace {

std::u16string Lower(std::u16string text) {
    for (char16_t& unit : text) {
        if (unit >= u'A' && unit <= u'Z') unit = static_cast<char16_t>(unit + 32);
    }
    return text;
}

// With its dot; empty for a name without one.
std::u16string LowerExtension(const std::u16string& path) {
    const std::size_t dot = path.find_last_of(u"./\\");
    if (dot == std::u16string::npos || path[dot] != u'.') return {};
    return Lower(path.substr(dot));
}

}  // namespace

std::u16string EncoderFor(Host& host, const std::u16string& destination) {
    const std::u16string extension = LowerExtension(destination);
    if (extension.empty()) return {};
    const std::vector<ModuleRow> encoders = host.Encoders();
    for (const ModuleRow& encoder : encoders) {
        if (Lower(encoder.extension) == extension) return encoder.name;
    }
    for (const ModuleRow& decoder : host.Decoders()) {
        const bool writes = std::any_of(encoders.begin(), encoders.end(),
                                        [&](const ModuleRow& row) { return row.name == decoder.name; });
        if (writes && Lower(decoder.extension) == extension) return decoder.name;
    }
    return {};
}
