#include "modules/wave/wave_settings.h"

XString ParseWaveSettings(const char16_t* text, WaveSettings* settings) {
    clSettings given(text);
    settings->depth = static_cast<WaveDepth>(given.Choice(kWaveDepth));
    settings->header = static_cast<WaveHeader>(given.Choice(kWaveHeader));
    return given.Trouble();
}
