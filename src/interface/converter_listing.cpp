// What the module folders offer, row by row. The row at index 0 looks into the folders, which is slow since
// modules are loaded to be asked; the others read what it found. A list therefore stands still while a host
// walks through it.
//
// The trace shows the buffers as the host has them, also when nothing was written to them.
#include "foundation/paths.h"
#include "interface/converter.h"
#include "interface/text.h"
#include "interface/trace_line.h"
#include "plugins/codec_handler.h"

namespace {

template <class List>
void Refresh(const char16_t* modules, const XLog& log, List list) {
    XLog::Information(Joined({u"Getting list of available ", modules}).Text(), log);
    list();
    XLog::Information(Joined({u"Finished getting list of available ", modules}).Text(), log);
}

// Copies the row's name: of its path that which every other call knows the module by.
bool CopyName(const XStringList& paths, std::int32_t index, char16_t* name) {
    if (index < 0 || index >= paths.Count()) return false;
    CopyOut(paths::GetFileTitle(paths.At(index)), name);
    return true;
}

}  // namespace

std::int32_t clConverter::GetEncoder(std::int32_t index, char16_t* name, char16_t* extension) {
    XTraceScope trace(log, "clConverter::GetEncoder");
    if (index == 0) {
        Refresh(u"encoders", log, [this] {
            clQvCodecHandler::ListEncoders(encoderNames, encoderExtensions, moduleHandle, log);
        });
    }
    const bool exists = CopyName(encoderNames, index, name);
    if (exists) CopyOut(encoderExtensions.At(index), extension);
    TraceLine(log, {u"Encoder: ", name, u"  Extension: ", extension});
    return exists ? 1 : 0;
}

std::int32_t clConverter::GetDecoder(std::int32_t index, char16_t* name, char16_t* extension,
                                     char16_t* description) {
    XTraceScope trace(log, "clConverter::GetDecoder");
    if (index == 0) {
        Refresh(u"decoders", log, [this] {
            clQvCodecHandler::ListDecoders(decoderNames, decoderExtensions, decoderDescriptions, moduleHandle,
                                           log);
        });
    }
    const bool exists = CopyName(decoderNames, index, name);
    if (exists) {
        CopyOut(decoderExtensions.At(index), extension);
        CopyOut(decoderDescriptions.At(index), description);
    }
    TraceLine(log, {u"Decoder: ", name, u"  Extension: ", extension, u"  Desc: ", description});
    return exists ? 1 : 0;
}

std::int32_t clConverter::GetDSP(std::int32_t index, char16_t* name) {
    XTraceScope trace(log, "clConverter::GetDSP");
    if (index == 0) {
        Refresh(u"DSPs", log, [this] {
            clQvCodecHandler::ListDSPs(dspNames, moduleHandle);
            dspNames.Sort(&XStringList::Less, 0);
        });
    }
    const bool exists = CopyName(dspNames, index, name);
    TraceLine(log, {u"DSP: ", name});
    return exists ? 1 : 0;
}
