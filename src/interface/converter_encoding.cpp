// Direct encoding: the host's blocks go to an encoder module as they come.
//
// Nothing is changed and nothing is checked; the module says whether the file is good when it ends. The
// record of the encoding stands in the object and holds the host's own texts, which the host keeps until the
// end.
#include <cstddef>
#include <cstring>

#include "audio/format_record.h"
#include "foundation/qv_text.h"
#include "interface/converter.h"
#include "plugins/codec_handler.h"

namespace {

// What a block says of its format is the end of the encoding's record: the format, and what a module keeps
// behind it.
constexpr std::size_t kBlockFormatOffset = offsetof(clEncoderSessionRec, format);
static_assert(kBlockFormatOffset + sizeof clBlockRec::format == sizeof(clEncoderSessionRec));

}  // namespace

std::int32_t clConverter::EncoderOpenFile(const char16_t* file, const char16_t* encoderName,
                                          const char16_t* settings, const QvFormatExtensible* format) {
    XTraceScope trace(log, "clConverter::EncoderOpenFile");
    if (BeginEncoding(file, encoderName, settings, format)) return 1;
    trace.SkipLeaveMark();
    return 0;
}

bool clConverter::BeginEncoding(const char16_t* file, const char16_t* encoderName, const char16_t* settings,
                                const QvFormatExtensible* format) {
    if (!clQvCodecHandler::LoadEncoder(encoderName, directEncoder, log, moduleHandle)) {
        XLog::Error(u"Error loading encoder.", log, "clConverter::EncoderOpenFile");
        return false;
    }
    clFormatHolder declared;
    TakeFormat(declared, format);
    encoderRecord = {};
    encoderRecord.file = ToQvText(file ? file : u"");
    encoderRecord.settings = ToQvText(settings ? settings : u"");
    encoderRecord.formatPointer = encoderRecord.format;
    GiveFormat(declared, encoderRecord.format);
    return directEncoder.BeginConversion(&encoderRecord);
}

// Written without trace marks, since hosts call it for every block.
std::int32_t clConverter::EncoderEncodeBlock(const std::uint8_t* buffer, const std::uint32_t* bytes,
                                             const std::uint32_t* finished) {
    if (directEncoder.Instance() == 0) return 1;
    clBlockRec block = {};
    block.data = buffer;
    block.bytes = buffer && bytes ? *bytes : 0;
    block.finished = finished ? *finished : 0;
    std::memcpy(block.format, reinterpret_cast<const std::uint8_t*>(&encoderRecord) + kBlockFormatOffset,
                sizeof block.format);
    directEncoder.EncodeBlock(&block);
    return 1;
}

// The instance stays, so that a second end reaches the module too.
std::int32_t clConverter::EncoderCloseFile() {
    XTraceScope trace(log, "clConverter::EncoderCloseFile");
    if (directEncoder.EndConversion(&encoderRecord)) return 1;
    trace.SkipLeaveMark();
    return 0;
}
