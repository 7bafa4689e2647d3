#include "converter/target.h"

#include <cstddef>
#include <cstring>

#include "converter/module_search.h"

Target::Target(Reporter& reporter) : mErrors(reporter) {
    mLog.mErrorOut = mErrors.Channel();
    mLog.mInfoOut = reporter.InformationStream();
}

bool Target::FindEncoder(const std::u16string& name) { return LoadEncoderNamed(XString(name.c_str()), mEncoder, mLog); }

bool Target::Begin(const std::u16string& file, const std::u16string& settings, const std::uint8_t* format) {
    mFile = file;
    mSettings = settings;
    mSession.file = mFile.c_str();
    mSession.settings = mSettings.c_str();
    std::memcpy(mSession.format, format, sizeof(mSession.format));
    mSession.formatPointer = mSession.format;
    return mEncoder.BeginConversion(&mSession) != 0;
}

void Target::Write(const clBlockRec& decoded) {
    clBlockRec block = {};
    block.data = decoded.data;
    block.bytes = decoded.bytes;
    // The format and all that follows it in the session, as it stands there.
    const auto* session = reinterpret_cast<const std::uint8_t*>(&mSession);
    std::memcpy(block.format, session + offsetof(clEncoderSessionRec, format), sizeof(block.format));
    block.finished = decoded.finished;
    mEncoder.EncodeBlock(&block);
}

bool Target::End() {
    std::uint32_t reserved = 0;
    const bool ended = mEncoder.EndConversion(&mSession, &reserved) != 0;
    mEncoder.Unload();
    return mErrors.Close() == 0 && ended;
}
