#include "modules/wave/wave_settings.h"

#include "foundation/joined.h"

namespace {

constexpr struct {
    const char16_t* text;
    WaveHeader header;
} kSettings[] = {
    {u"", WaveHeader::automatic},          {u"-header=auto", WaveHeader::automatic},
    {u"-header=plain", WaveHeader::plain}, {u"-header=extensible", WaveHeader::extensible},
    {u"-header=rf64", WaveHeader::rf64},
};

}  // namespace

XString ParseWaveSettings(const char16_t* text, WaveHeader* header) {
    XString trimmed(text);
    while (trimmed.GetAt() == u' ') trimmed.Truncate(1);
    while (trimmed.GetAt(1) == u' ') trimmed.RemoveAt(1);
    for (const auto& setting : kSettings) {
        if (!(trimmed == setting.text)) continue;
        *header = setting.header;
        return XString();
    }
    return Joined({u"the settings \"", trimmed.Text(), u"\" are not known to the WAVE encoder"});
}
