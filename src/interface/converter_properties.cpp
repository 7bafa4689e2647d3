// What a file is, asked of the module that decodes it: the numbers in one call, the texts row by row.
//
// The texts come from the module all at once, as one block, when the host asks for the row at index 0; the other
// rows read what that left. A module without such a block leaves the rows of the file before in place, and they
// are served, wanted so: only a block replaces a block.
#include <cstring>

#include "audio/format_record.h"
#include "interface/converter.h"
#include "interface/file_request.h"
#include "interface/text.h"
#include "quavermill/quavermill.h"

namespace {

// The plain form of a record, whatever form the module's has.
void GivePlainFormat(const clOpenFileRec& record, QvFormat* format) {
    if (!format) return;
    clFormatHolder holder;
    TakeFormat(holder, record.format);
    std::memcpy(format, holder.format, sizeof *format);
}

}  // namespace

std::int32_t clConverter::ReadAudioProperties(const char16_t* file, QvFormat* format, std::uint64_t* lengthMs,
                                              std::uint64_t* fileSize, std::int64_t* property) {
    clFileRequest request(kReadAudioProperties, file, log, moduleHandle);
    if (!request.FindFile() || !request.FindDecoder()) return request.Result();
    request.Open(QV_OPEN_PROPERTIES, [&](const clOpenFileRec& record) -> std::int32_t {
        if (lengthMs) *lengthMs = record.lengthMs;
        if (property) *property = record.property;
        if (fileSize) *fileSize = record.fileSize;
        GivePlainFormat(record, format);
        return QV_DONE;
    });
    return request.Result();
}

// A row that is there counts as done also behind a module that has just refused the file: it is then one of the
// file before, and the errors say what happened.
std::int32_t clConverter::ReadAudioPropStrings(const char16_t* file, std::int32_t index, char16_t* name,
                                               char16_t* value) {
    clFileRequest request(kReadAudioPropStrings, file, log, moduleHandle);
    if (!request.FindFile()) return request.Result();
    if (index == 0) {
        if (!request.FindDecoder()) return request.Result();
        request.Open(QV_OPEN_PROPERTY_ROWS, [&](const clOpenFileRec& record) -> std::int32_t {
            if (!record.propertyData || record.propertyDataSize == 0) return QV_NOTHING;
            propList.Deserialise(record.propertyData, record.propertyDataSize);
            return QV_DONE;
        });
    }
    const IDTagRow* row = propList.Fetch(index);
    CopyOut(row, name, value);
    return row ? QV_DONE : request.Result();
}
