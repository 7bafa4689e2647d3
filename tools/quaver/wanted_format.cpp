// What is computed is rounded to the depth of the moment. So samples grow before anything is computed and
// shrink when all is done; and fewer channels are brought to another rate, or more made after it, as that is
// the work that costs.
#include "wanted_format.h"

#include "decimal.h"

namespace {

void Add(EffectList& effects, bool isWanted, const char16_t* name, const char16_t* setting,
         std::uint32_t value) {
    if (isWanted) effects.emplace_back(name, setting + Decimal(value));
}

}  // namespace

EffectList EffectsTo(const WantedFormat& wanted, const QvFormat& source, EffectList own) {
    const bool grows = wanted.bits > source.wBitsPerSample;
    const bool isFewer = wanted.channels < source.nChannels;
    const auto depth = [&](EffectList& effects, bool isItsTurn) {
        Add(effects, isItsTurn && wanted.bits != 0, u"Depth", u"-bits=", wanted.bits);
    };
    const auto channels = [&](EffectList& effects, bool isItsTurn) {
        Add(effects, isItsTurn && wanted.channels != 0, u"Channels", u"-channels=", wanted.channels);
    };
    EffectList effects;
    depth(effects, grows);
    effects.insert(effects.end(), own.begin(), own.end());
    channels(effects, isFewer);
    Add(effects, wanted.rate != 0, u"Resample", u"-rate=", wanted.rate);
    channels(effects, !isFewer);
    depth(effects, !grows);
    return effects;
}
