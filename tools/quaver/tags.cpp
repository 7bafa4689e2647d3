#include "tags.h"

#include <algorithm>

#include "decimal.h"
#include "destination.h"
#include "host.h"
#include "json.h"
#include "output_stream.h"
#include "picture.h"
#include "reading.h"
#include "tag_changes.h"
#include "tally.h"

namespace {

struct FileTags {
    std::u16string file;
    Reading reading;
    std::vector<TextRow> rows;
};

// What came of the calls on a handle. What modules remark, of a tag that a file can't hold say, is told too.
Reading Conclude(Host& host, bool good, bool quiet, const std::u16string& excuse) {
    const Reports reports = host.TakeReports();
    if (!quiet) TellErrors(reports.remarks);
    return ::Conclude(good, reports.errors, excuse);
}

FileTags Read(const std::u16string& file, bool quiet) {
    Host host;
    FileTags tags{file, {}, {}};
    const bool good = host.ReadTags(file, tags.rows);
    tags.reading = Conclude(host, good, quiet, u"'" + file + u"' can't be read: its decoder does not work.");
    return tags;
}

ExitCode Change(const TagChanges& changes, const std::u16string& file, bool quiet) {
    Host host;
    const bool good = changes.Apply(host, file);
    const Reading reading = Conclude(
        host, good, quiet, u"The tags of '" + file + u"' can't be changed: its decoder does not work.");
    const ExitCode code = reading.Code();
    if (code == ExitCode::kDone && !quiet) Tell(u"Changed the tags of '" + file + u"'");
    return code;
}

// One row a line: what stands behind a line break in a value is moved in.
std::u16string Indented(const std::u16string& value) {
    std::u16string text;
    for (const char16_t unit : value) {
        if (unit == u'\r') continue;
        text += unit;
        if (unit == u'\n') text += u"    ";
    }
    return text;
}

std::u16string Plain(const TextRow& row) {
    std::u16string text = u"  " + row.name;
    if (row.art.empty() || !row.value.empty()) text += u"=" + Indented(row.value);
    if (!row.art.empty()) text += u" (" + ImageType(row.art) + u", " + Decimal(row.art.size()) + u" bytes)";
    return text + u"\n";
}

std::u16string Plain(const FileTags& tags) {
    std::u16string text = tags.file + u"\n";
    if (tags.rows.empty()) text += u"  no tags\n";
    for (const TextRow& row : tags.rows) text += Plain(row);
    return text;
}

void WriteTexts(JsonWriter& json, const std::vector<TextRow>& rows) {
    json.Key(u"tags").BeginArray();
    for (const TextRow& row : rows) {
        if (row.art.empty())
            json.BeginObject().Key(u"name").Text(row.name).Key(u"value").Text(row.value).EndObject();
    }
    json.EndArray();
}

void WritePictures(JsonWriter& json, const std::vector<TextRow>& rows) {
    json.Key(u"art").BeginArray();
    for (const TextRow& row : rows) {
        if (row.art.empty()) continue;
        json.BeginObject().Key(u"name").Text(row.name).Key(u"description").Text(row.value);
        json.Key(u"bytes").Number(static_cast<std::int64_t>(row.art.size()));
        json.Key(u"type").Text(ImageType(row.art)).EndObject();
    }
    json.EndArray();
}

void Write(JsonWriter& json, const FileTags& tags) {
    json.BeginObject().Key(u"file").Text(tags.file);
    if (tags.reading.good) {
        WriteTexts(json, tags.rows);
        WritePictures(json, tags.rows);
    }
    if (!tags.reading.errors.empty()) json.Key(u"error").Text(tags.reading.errors);
    json.EndObject();
}

ExitCode SavePicture(const TagsOptions& options, const std::u16string& file) {
    const auto& [path, kind] = *options.pictureOut;
    const FileTags tags = Read(file, options.quiet);
    if (!tags.reading.good) return tags.reading.Code();
    const auto row =
        std::find_if(tags.rows.begin(), tags.rows.end(), [&wanted = kind](const TextRow& candidate) {
            return !candidate.art.empty() && IsPicture(candidate.name, wanted);
        });
    if (row == tags.rows.end()) {
        Tell(u"'" + file + u"' has no picture '" + PictureName(kind) + u"'.");
        return ExitCode::kFailed;
    }
    OutputStream output(path);
    const std::string_view bytes(reinterpret_cast<const char*>(row->art.data()), row->art.size());
    if (!output.Open() || !output.Write(bytes) || !output.Commit()) {
        Tell(u"'" + path + u"' can't be written.");
        return ExitCode::kOutput;
    }
    if (!options.quiet) Tell(u"Wrote '" + path + u"'");
    return tags.reading.Code();
}

ExitCode Show(const TagsOptions& options) {
    Tally tally;
    JsonWriter json;
    bool said = true;
    json.BeginObject().Key(u"files").BeginArray();
    for (const std::u16string& file : options.files) {
        const FileTags tags = Read(file, options.quiet);
        tally.Count(tags.reading.Code());
        if (options.json) {
            Write(json, tags);
        } else if (tags.reading.good) {
            said = Say(Plain(tags)) && said;
        }
    }
    json.EndArray().EndObject();
    if (options.json) said = Say(json.Document());
    return Concluded(tally.Result(), said);
}

std::u16string Objection(const TagsOptions& options) {
    if (!options.pictureOut) return {};
    if (options.Changes() || options.json)
        return u"--art-out stands alone: it changes nothing and shows nothing.";
    if (options.files.size() > 1) return u"--art-out takes the picture of one file.";
    if (options.pictureOut->first.empty()) return u"--art-out needs the name of the file to write.";
    return ObjectionTo(options.files.front(), options.pictureOut->first, options.overwrite);
}

}  // namespace

ExitCode RunTags(const TagsOptions& options) {
    std::u16string objection = Objection(options);
    const TagChanges changes(options, objection);
    if (!objection.empty()) {
        Tell(objection);
        return ExitCode::kRefused;
    }
    if (options.pictureOut) return SavePicture(options, options.files.front());
    if (!options.Changes()) return Show(options);
    Tally tally;
    for (const std::u16string& file : options.files) tally.Count(Change(changes, file, options.quiet));
    const ExitCode changed = tally.Result();
    const ExitCode shown = options.json ? Show(options) : ExitCode::kDone;
    return changed == ExitCode::kDone ? shown : changed;
}
