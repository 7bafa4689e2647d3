// An encoder that does as its script says (script.h) and writes no file. Its directives, each optional:
//
//     extension|.ext          what Get "Extension" answers; a null text without it
//     get|0    set|0    begin|0    end|0    block|0      the entry fails
//     panel|TEXT              as in script.h
//
// The journal says of a session and of each block what reached the module.
#define QV_ENCODER_MODULE
#include "modules/script.h"

namespace {

struct Encoder : script::PanelInstance {
    using PanelInstance::PanelInstance;

    std::basic_string<QvChar> extension;
};

}  // namespace

QvInstance ENC_Create(const QvLog* log) {
    return script::Make<Encoder>(log, "ENC_Create");
}

void ENC_Destroy(QvInstance instance) {
    script::End<Encoder>(instance, "ENC_Destroy");
}

int32_t ENC_Get(QvInstance instance, const QvChar* key, clCodecQueryRec* query) {
    Encoder& encoder = script::Enter<Encoder>(instance, "ENC_Get", script::Narrow(key));
    encoder.extension = script::Wide(encoder.script.Text("extension"));
    query->text = encoder.extension.empty() ? nullptr : encoder.extension.c_str();
    return encoder.script.Result("get");
}

int32_t ENC_Set(QvInstance instance, const QvChar* key, const clCodecQueryRec*) {
    return script::Enter<Encoder>(instance, "ENC_Set", script::Narrow(key)).script.Result("set");
}

void ENC_ShowConfigBit(QvInstance instance, uint64_t parent, int32_t x, int32_t y, const QvChar* settings) {
    reinterpret_cast<Encoder*>(instance)->Show("ENC_ShowConfigBit", parent, x, y, settings);
}

const QvChar* ENC_RemoveConfigBit(QvInstance instance, uint64_t parent) {
    return reinterpret_cast<Encoder*>(instance)->Remove("ENC_RemoveConfigBit", parent);
}

int32_t ENC_BeginConversion(QvInstance instance, clEncoderSessionRec* session) {
    const std::string details = script::Narrow(session->file) + " '" + script::Narrow(session->settings) +
                                "' " + script::FormatText(session->formatPointer);
    return script::Enter<Encoder>(instance, "ENC_BeginConversion", details).script.Result("begin");
}

int32_t ENC_EndConversion(QvInstance instance, clEncoderSessionRec*, uint32_t* reserved) {
    return script::Enter<Encoder>(instance, "ENC_EndConversion", std::to_string(*reserved))
        .script.Result("end");
}

int32_t ENC_EncodeBlock(QvInstance instance, const clBlockRec* block) {
    const std::string details = script::BlockText(*block) + " " + script::FormatText(block->format);
    return script::Enter<Encoder>(instance, "ENC_EncodeBlock", details).script.Result("block");
}
