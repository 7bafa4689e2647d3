#include "converter/tags.h"

#include <algorithm>

#include "converter/module_search.h"
#include "foundation/qv_text.h"

namespace {

bool GivesName(const Command& command, const XString& name) {
    const XString folded = name.ToUpper();
    return std::ranges::any_of(command.tags, [&](const Command::Pair& tag) {
        return XString(tag.name.c_str()).ToUpper() == folded;
    });
}

void RemoveGiven(const Command& command, clIDTagList& tags) {
    for (std::int32_t i = tags.Count(); i-- > 0;)
        if (tags.At(i).art.Size() == 0 && GivesName(command, tags.At(i).name)) tags.RemoveAt(i);
}

}  // namespace

void CollectTags(const Command& command, Source& source, clIDTagList& tags) {
    if (command.carryTags) source.ReadTags(tags);
    RemoveGiven(command, tags);
    for (const Command::Pair& tag : command.tags) tags.Add(tag.name.c_str(), tag.value.c_str());
}

void WriteTags(const Command& command, const std::u16string& file, const clIDTagList& tags,
               Reporter& reporter) {
    if (tags.Count() == 0) return;
    XLog log;
    log.mInfoOut = reporter.InformationStream();
    log.mErrorOut = reporter.InformationStream();
    clByteStore flat;
    clQvDecoder module;
    clCodecQueryRec query = {};
    bool written = false;
    if (tags.Serialise(flat) && LoadDecoderFor(XString(command.destination.c_str()), module, log)) {
        query.text = ToQvText(file.c_str());
        query.data = flat.Data();
        query.dataSize = flat.Size();
        written = module.Set(u"IDTags", &query);
    }
    if (!written) reporter.Information(u"No tags were written to '" + command.destination + u"'");
}
