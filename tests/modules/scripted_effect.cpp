// An effect that does as its script says (script.h). Its directives, each optional:
//
//     panel|TEXT                       as in script.h
//     begin|0  again|0  look|0  pass|0  end|0  after|0    the entry fails; `again` is a second begin
//     format|TAG|CHANNELS|RATE|BITS    what it answers; what came in without it
//     other|RATE                       the rate that it answers the second time
//     length|MS                        what it answers
//     wants                            it wants all of the audio first
//     multiply|N    add|N              what it does to each byte, in this order
//     hold                             it gives everything back at the end, with the last block
//     tail|N|BYTES                     N blocks of so many bytes 1 behind the last block, one for each call
//     endless                          it never says that it has finished, and gives nothing
//     early                            it says that it has finished with every block
//     nulls                            it gives bytes that are nowhere
//
// The journal says what reached the module.
#define QV_DSP_MODULE
#include "modules/script.h"

#include <cstring>

namespace {

struct Effect : script::PanelInstance {
    using PanelInstance::PanelInstance;

    void Change(const clBlockRec& in);
    void GiveTail(bool isLast);

    std::string audio, held;
    bool began = false;
    bool lastIsIn = false;
    std::int64_t tailLeft = 0;
};

void Effect::Change(const clBlockRec& in) {
    audio = held;
    for (std::uint32_t i = 0; i < in.bytes; ++i) {
        const std::int64_t byte = in.data[i] * script.Number("multiply", 0, 1) + script.Number("add", 0, 0);
        audio += static_cast<char>(byte);
    }
    held.clear();
    if (script.Has("hold") && in.finished == 0) audio.swap(held);
}

void Effect::GiveTail(bool isLast) {
    if (lastIsIn && tailLeft > 0) {
        audio.assign(static_cast<std::size_t>(script.Number("tail", 1, 0)), '\1');
        --tailLeft;
    }
    lastIsIn = isLast;
}

}  // namespace

QvInstance DSP_Create(const QvLog* log) {
    return script::Make<Effect>(log, "DSP_Create");
}

void DSP_Destroy(QvInstance instance) {
    script::End<Effect>(instance, "DSP_Destroy");
}

int32_t DSP_Get(QvInstance instance, const QvChar* key, clCodecQueryRec*) {
    return script::Enter<Effect>(instance, "DSP_Get", script::Narrow(key)).script.Result("get");
}

int32_t DSP_Set(QvInstance instance, const QvChar* key, const clCodecQueryRec*) {
    return script::Enter<Effect>(instance, "DSP_Set", script::Narrow(key)).script.Result("set");
}

void DSP_ShowConfigBit(QvInstance instance, uint64_t parent, int32_t x, int32_t y, const QvChar* settings) {
    reinterpret_cast<Effect*>(instance)->Show("DSP_ShowConfigBit", parent, x, y, settings);
}

const QvChar* DSP_RemoveConfigBit(QvInstance instance, uint64_t parent) {
    return reinterpret_cast<Effect*>(instance)->Remove("DSP_RemoveConfigBit", parent);
}

int32_t DSP_BeginConversion(QvInstance instance, clEffectSessionRec* session) {
    const std::string details =
        "'" + script::Narrow(session->settings) + "' " + script::FormatText(session->format) + " length " +
        std::to_string(session->lengthMs) + " wants " + std::to_string(session->wants);
    Effect& effect = script::Enter<Effect>(instance, "DSP_BeginConversion", details);
    const script::Script& script = effect.script;
    QvFormat format;
    std::memcpy(&format, session->format, sizeof format);
    format.wFormatTag = static_cast<std::uint16_t>(script.Number("format", 0, format.wFormatTag));
    format.nChannels = static_cast<std::uint16_t>(script.Number("format", 1, format.nChannels));
    format.nSamplesPerSec = static_cast<std::uint32_t>(script.Number("format", 2, format.nSamplesPerSec));
    format.wBitsPerSample = static_cast<std::uint16_t>(script.Number("format", 3, format.wBitsPerSample));
    if (effect.began) {
        format.nSamplesPerSec = static_cast<std::uint32_t>(script.Number("other", 0, format.nSamplesPerSec));
    }
    std::memcpy(session->format, &format, sizeof format);
    session->lengthMs =
        static_cast<std::uint64_t>(script.Number("length", 0, static_cast<std::int64_t>(session->lengthMs)));
    session->wants = script.Has("wants") ? QV_EFFECT_WANTS_ALL_FIRST : 0;
    effect.tailLeft = script.Number("tail", 0, 0);
    effect.lastIsIn = false;
    const char* entry = effect.began ? "again" : "begin";
    effect.began = true;
    return script.Result(entry);
}

int32_t DSP_EndConversion(QvInstance instance, clEffectSessionRec*) {
    return script::Enter<Effect>(instance, "DSP_EndConversion").script.Result("end");
}

int32_t DSP_PassAudioBlock(QvInstance instance, const clBlockRec* in, clBlockRec* out) {
    const std::string details = script::BlockText(*in) + " " + script::FormatText(in->format);
    Effect& effect = script::Enter<Effect>(instance, "DSP_PassAudioBlock", details);
    effect.Change(*in);
    effect.GiveTail(in->finished != 0);
    const bool isDone = in->finished != 0 && effect.tailLeft == 0 && !effect.script.Has("endless");
    const bool isNowhere = effect.script.Has("nulls");
    out->data = isNowhere ? nullptr : reinterpret_cast<const std::uint8_t*>(effect.audio.data());
    out->bytes = static_cast<std::uint32_t>(effect.audio.size());
    out->finished = isDone || effect.script.Has("early");
    return effect.script.Result("pass");
}

int32_t DSP_PassNonLive(QvInstance instance, const clBlockRec* in) {
    const std::string details = script::BlockText(*in) + " " + script::FormatText(in->format);
    return script::Enter<Effect>(instance, "DSP_PassNonLive", details).script.Result("look");
}

int32_t DSP_AfterConversion(QvInstance instance, const QvChar* file) {
    return script::Enter<Effect>(instance, "DSP_AfterConversion", script::Narrow(file))
        .script.Result("after");
}
