#include "list.h"

#include <algorithm>

#include "host.h"
#include "json.h"
#include "terminal.h"

namespace {

struct Listing {
    std::vector<ModuleRow> encoders, decoders, effects;
};

std::u16string Padded(std::u16string text, std::size_t width) {
    if (text.size() < width) text.append(width - text.size(), u' ');
    return text;
}

std::size_t Widest(const std::vector<ModuleRow>& rows, std::u16string ModuleRow::*column) {
    std::size_t width = 0;
    for (const ModuleRow& row : rows) width = std::max(width, (row.*column).size());
    return width;
}

std::u16string Table(const std::u16string& heading, const std::vector<ModuleRow>& rows) {
    std::u16string table = heading + u"\n";
    if (rows.empty()) table += u"  none\n";
    const std::size_t names = Widest(rows, &ModuleRow::name),
                      extensions = Widest(rows, &ModuleRow::extension);
    for (const ModuleRow& row : rows) {
        std::u16string line = u"  " + Padded(row.name, names) + u"  " + Padded(row.extension, extensions) +
                              u"  " + row.description;
        line.erase(line.find_last_not_of(u' ') + 1);
        table += line + u"\n";
    }
    return table;
}

std::u16string Plain(const Listing& listing) {
    return Table(u"Encoders", listing.encoders) + Table(u"Decoders", listing.decoders) +
           Table(u"Effects", listing.effects);
}

void WriteRows(JsonWriter& json, std::u16string_view key, const std::vector<ModuleRow>& rows) {
    json.Key(key).BeginArray();
    for (const ModuleRow& row : rows) {
        json.BeginObject().Key(u"name").Text(row.name);
        if (key != u"effects") json.Key(u"extension").Text(row.extension);
        if (key == u"decoders") json.Key(u"description").Text(row.description);
        json.EndObject();
    }
    json.EndArray();
}

std::u16string Json(const Listing& listing) {
    JsonWriter json;
    json.BeginObject();
    WriteRows(json, u"encoders", listing.encoders);
    WriteRows(json, u"decoders", listing.decoders);
    WriteRows(json, u"effects", listing.effects);
    return json.EndObject().Document();
}

}  // namespace

ExitCode RunList(const ListOptions& options) {
    Host host;
    const Listing listing = {host.Encoders(), host.Decoders(), host.Effects()};
    TellErrors(host.TakeAllErrors());
    return Concluded(ExitCode::kDone, Say(options.json ? Json(listing) : Plain(listing)));
}
