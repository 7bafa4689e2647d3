#include "converter/target.h"

#include <cstddef>
#include <cstring>

#include "converter/module_search.h"
#include "foundation/qv_text.h"

Target::Target(Reporter& reporter) : mErrors(reporter) {
    mLog.mErrorOut = mErrors.Channel();
    mLog.mInfoOut = reporter.InformationStream();
}

bool Target::FindEncoder(const std::u16string& name) {
    return LoadEncoderNamed(XString(name.c_str()), mEncoder, mLog);
}

bool Target::Begin(const std::u16string& file, const std::u16string& settings, const std::uint8_t* format) {
    mFile = file;
    mSettings = settings;
    mSession.file = ToQvText(mFile.c_str());
    mSession.settings = ToQvText(mSettings.c_str());
    std::memcpy(mSession.format, format, sizeof(mSession.format));
    mSession.formatPointer = mSession.format;
    return mEncoder.BeginConversion(&mSession);
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
    const bool ended = mEncoder.EndConversion(&mSession);
    mEncoder.Unload();
    return mErrors.Close() == 0 && ended;
}
