#include "support/codec/codec_modules.h"
#include "foundation/qv_text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <filesystem>

#include "platform/module.h"
#include "platform/names.h"

std::u16string TreeModule(std::u16string_view folder, std::u16string_view name) {
    namespace fs = std::filesystem;
    char16_t self[4096];
    platform::GetModuleFileNameW(nullptr, self, 4096);
    const fs::path build = fs::path(self).parent_path().parent_path().parent_path();
    return (build / "tree" / fs::path(folder) / fs::path(name)).u16string() + platform::kModuleExtension;
}

QvFormatExtensible Decoding::Format() const {
    QvFormatExtensible format;
    std::memcpy(&format, record.format, sizeof format);
    return format;
}

CodecModules::CodecModules(std::u16string_view decoder, std::u16string_view encoder) {
    EXPECT_TRUE(decoder.empty() || mDecoder.Load(TreeModule(u"decoder", decoder).c_str()));
    EXPECT_TRUE(encoder.empty() || mEncoder.Load(TreeModule(u"encoder", encoder).c_str()));
}

bool CodecModules::Open(const std::u16string& file, std::uint32_t request, clOpenFileRec& record) {
    mDecoder.Destroy();
    EXPECT_TRUE(mDecoder.Create(mLog.Log()));
    std::memset(&record, 0xEE, sizeof record);  // as good as never cleared
    record.file = ToQvText(file.c_str());
    record.request = request;
    record.tagDataSize = 0;
    return mDecoder.Open(&record);
}

bool CodecModules::DecodeBlock(std::string& audio) {
    clBlockRec block;
    std::memset(&block, 0xEE, sizeof block);
    EXPECT_TRUE(mDecoder.DecodeBlock(&block));
    if (block.bytes > 0) audio.append(reinterpret_cast<const char*>(block.data), block.bytes);
    return block.finished == 0;
}

Decoding CodecModules::Decode(const std::u16string& file) {
    Decoding decoding;
    decoding.opened = Open(file, QV_OPEN_DECODING, decoding.record);
    for (int i = 0; decoding.opened && !decoding.finished && i < 100000; ++i) {
        const std::size_t before = decoding.audio.size();
        decoding.finished = !DecodeBlock(decoding.audio);
        decoding.blocks.push_back(static_cast<std::uint32_t>(decoding.audio.size() - before));
    }
    mDecoder.Close(nullptr);
    mDecoder.Destroy();
    decoding.errors = mLog.TakeErrors();
    decoding.information = mLog.TakeInformation();
    return decoding;
}

bool CodecModules::Encode(const std::u16string& file, const QvFormatExtensible& format,
                          std::string_view audio, std::vector<std::uint32_t> pieces,
                          const char16_t* settings) {
    clEncoderSessionRec session{};
    session.file = ToQvText(file.c_str());
    session.settings = ToQvText(settings);
    std::memcpy(session.format, &format, sizeof format);
    session.formatPointer = session.format;
    if (!mEncoder.Instance() && !mEncoder.Create(mLog.Log())) return false;
    if (!mEncoder.BeginConversion(&session)) return false;
    for (std::size_t at = 0, piece = 0; at < audio.size(); piece += piece + 1 < pieces.size()) {
        clBlockRec block{};
        block.data = reinterpret_cast<const std::uint8_t*>(audio.data() + at);
        block.bytes = static_cast<std::uint32_t>(std::min<std::size_t>(pieces[piece], audio.size() - at));
        std::memcpy(block.format, session.format, sizeof block.format);
        at += block.bytes;
        block.finished = at == audio.size();
        if (!mEncoder.EncodeBlock(&block)) break;  // the end has to say so too
    }
    return mEncoder.EndConversion(&session);
}
