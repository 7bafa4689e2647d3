#include "modules/wave/wave_settings.h"

XString ParseWaveSettings(const char16_t* text, WaveHeader* header) {
    clSettings settings(text);
    *header = static_cast<WaveHeader>(settings.Choice(kWaveHeader));
    return settings.Trouble();
}
