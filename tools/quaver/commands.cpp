// The parser knows UTF-8 only. Each command has a record of the arguments as the parser leaves them, and makes its
// options of it once everything is there.
#include "commands.h"

#include <CLI/CLI.hpp>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "convert.h"
#include "decode.h"
#include "info.h"
#include "list.h"
#include "settings.h"
#include "tags.h"
#include "utf8.h"
#include "wanted_format.h"

namespace {

using Texts = std::vector<std::string>;
using WidePair = std::pair<std::u16string, std::u16string>;

// "name=value" parted at the first equals sign; without one the value is empty.
WidePair SplitPair(const std::string& text) {
    const std::size_t equals = text.find('=');
    if (equals == std::string::npos) return {FromUtf8(text), u""};
    return {FromUtf8(text.substr(0, equals)), FromUtf8(text.substr(equals + 1))};
}

std::vector<WidePair> SplitPairs(const Texts& texts) {
    std::vector<WidePair> pairs;
    for (const std::string& text : texts) pairs.push_back(SplitPair(text));
    return pairs;
}

std::vector<std::u16string> Wide(const Texts& texts) {
    std::vector<std::u16string> wide;
    for (const std::string& text : texts) wide.push_back(FromUtf8(text));
    return wide;
}

// An option that may come several times and takes one value each time.
CLI::Option* AddRepeated(CLI::App& command, const std::string& name, Texts& values,
                         const std::string& description) {
    return command.add_option(name, values, description + "; may come several times")
        ->allow_extra_args(false);
}

// Complains of a text without a name before its equals sign, and of one without the sign.
std::string NamedValue(const std::string& text) {
    const std::size_t equals = text.find('=');
    return equals == std::string::npos || equals == 0 ? "'" + text + "' is no NAME=VALUE" : "";
}

std::string NotEmpty(const std::string& text) {
    return text.empty() ? "a name is empty" : "";
}

// The rate, the channels and the depth that are wanted.
void AddWantedFormat(CLI::App& command, WantedFormat& wanted) {
    command.add_option("--rate", wanted.rate, "The rate in hertz; otherwise the file's own")
        ->check(CLI::Range(1u, 0x7FFFFFFFu));
    command.add_option("--channels", wanted.channels, "How many channels; otherwise the file's own")
        ->check(CLI::Range(1, 65535));
    command.add_option("--bits", wanted.bits, "The bits of a sample; otherwise the file's own")
        ->check(CLI::IsMember({8, 16, 24, 32, 64}));
}

void AddConvert(CLI::App& app, Command& chosen) {
    struct Arguments {
        std::string source, destination, encoder, settings;
        Texts effects, tags;
        ConvertOptions options;
        bool dropTags = false;
    };
    const auto given = std::make_shared<Arguments>();
    CLI::App& convert = *app.add_subcommand("convert", "Convert one file");
    convert.add_option("SOURCE", given->source, "The file to convert")->required();
    convert.add_option("DESTINATION", given->destination, "The file to make")->required();
    convert.add_option("-e,--encoder", given->encoder,
                       "The encoder; otherwise the destination's extension decides");
    convert.add_option("-s,--settings", given->settings, "The encoder's settings text");
    AddWantedFormat(convert, given->options.wanted);
    AddRepeated(convert, "--effect", given->effects, "An effect as NAME or NAME=SETTINGS");
    AddRepeated(convert, "-t,--tag", given->tags, "A tag as NAME=VALUE");
    convert.add_flag("--no-tags", given->dropTags, "Leave the source's own tags behind");
    convert.add_flag("-f,--overwrite", given->options.overwrite, "Replace an existing destination");
    convert.add_flag("-q,--quiet", given->options.quiet, "Say nothing but errors");
    convert.callback([given, &chosen] {
        ConvertOptions& options = given->options;
        options.source = FromUtf8(given->source);
        options.destination = FromUtf8(given->destination);
        options.encoder = FromUtf8(given->encoder);
        options.settings = FromUtf8(given->settings);
        options.effects = SplitPairs(given->effects);
        options.tags = SplitPairs(given->tags);
        options.carryTags = !given->dropTags;
        chosen = [given] { return RunConvert(given->options); };
    });
}

void AddDecode(CLI::App& app, Command& chosen) {
    struct Arguments {
        std::string file, output;
        DecodeOptions options;
    };
    const auto given = std::make_shared<Arguments>();
    CLI::App& decode = *app.add_subcommand("decode", "Decode one file to WAVE or to bare samples");
    decode.add_option("FILE", given->file, "The file to decode")->required();
    decode.add_option("-o,--output", given->output, "The file to make; otherwise standard output");
    decode.add_flag("--raw", given->options.raw, "Bare samples, without a header");
    AddWantedFormat(decode, given->options.wanted);
    decode.add_flag("-f,--overwrite", given->options.overwrite, "Replace an existing file");
    decode.add_flag("-q,--quiet", given->options.quiet, "Say nothing but errors");
    decode.callback([given, &chosen] {
        given->options.file = FromUtf8(given->file);
        given->options.output = FromUtf8(given->output);
        chosen = [given] { return RunDecode(given->options); };
    });
}

void AddInfo(CLI::App& app, Command& chosen) {
    struct Arguments {
        Texts files;
        InfoOptions options;
    };
    const auto given = std::make_shared<Arguments>();
    CLI::App& info = *app.add_subcommand("info", "Show what files hold");
    info.add_option("FILE", given->files, "The files to look at")->required();
    info.add_flag("--json", given->options.json, "As one JSON document");
    info.callback([given, &chosen] {
        given->options.files = Wide(given->files);
        chosen = [given] { return RunInfo(given->options); };
    });
}

void AddList(CLI::App& app, Command& chosen) {
    const auto options = std::make_shared<ListOptions>();
    CLI::App& list = *app.add_subcommand("list", "List encoders, decoders and effects");
    list.add_flag("--json", options->json, "As one JSON document");
    list.callback([options, &chosen] { chosen = [options] { return RunList(*options); }; });
}

void AddSettings(CLI::App& app, Command& chosen) {
    struct Arguments {
        std::string encoder, effect, start;
        std::optional<std::string> set;
        SettingsOptions options;
    };
    const auto given = std::make_shared<Arguments>();
    CLI::App& settings =
        *app.add_subcommand("settings", "Show the settings of an encoder or effect, or set them");
    auto& module = *settings.add_option_group("module");
    module.add_option("ENCODER", given->encoder, "The encoder");
    CLI::Option* const effect =
        module.add_option("--dsp", given->effect, "An effect instead; its settings are shown and not stored");
    module.require_option(1);
    CLI::Option* const start =
        settings.add_option("--start", given->start, "What the form begins with; otherwise what is stored");
    CLI::Option* const set = settings.add_option("-s,--set", given->set, "Store this text, without a form")
                                 ->excludes(start, effect);
    settings.add_flag("-p,--print", given->options.print, "Show no form, only what is stored")
        ->excludes(start, set, effect);
    settings.callback([given, &chosen] {
        SettingsOptions& options = given->options;
        options.isEffect = !given->effect.empty();
        options.name = FromUtf8(options.isEffect ? given->effect : given->encoder);
        options.start = FromUtf8(given->start);
        if (given->set) options.set = FromUtf8(*given->set);
        chosen = [given] { return RunSettings(given->options); };
    });
}

void AddTags(CLI::App& app, Command& chosen) {
    struct Arguments {
        Texts files, settings, deletions, picturesIn, pictureOut;
        TagsOptions options;
    };
    const auto given = std::make_shared<Arguments>();
    CLI::App& tags = *app.add_subcommand("tags", "Show the tags of files, or change them");
    tags.add_option("FILE", given->files, "The files")->required();
    AddRepeated(tags, "-s,--set", given->settings,
                "Set a tag, as NAME=VALUE; the same name again gives it several values")
        ->check(NamedValue);
    AddRepeated(tags, "-d,--delete", given->deletions, "Delete the tags of this name")->check(NotEmpty);
    tags.add_flag("--delete-all", given->options.deleteAll, "Delete all tags");
    AddRepeated(tags, "--art-in", given->picturesIn,
                "Put a picture in, as [KIND=]IMAGEFILE; the front cover without a kind");
    tags.add_option("--art-out", given->pictureOut, "Write a picture to FILE; the front cover without a KIND")
        ->expected(1, 2)
        ->type_name("FILE [KIND]");
    tags.add_flag("-f,--overwrite", given->options.overwrite, "Let --art-out replace an existing file");
    tags.add_flag("--json", given->options.json, "As one JSON document");
    tags.add_flag("-q,--quiet", given->options.quiet, "Say nothing but errors");
    tags.callback([given, &chosen] {
        TagsOptions& options = given->options;
        options.files = Wide(given->files);
        options.settings = SplitPairs(given->settings);
        options.deletions = Wide(given->deletions);
        options.picturesIn = Wide(given->picturesIn);
        if (const Texts& out = given->pictureOut; !out.empty())
            options.pictureOut = {FromUtf8(out.front()), out.size() > 1 ? FromUtf8(out.back()) : u""};
        chosen = [given] { return RunTags(given->options); };
    });
}

}  // namespace

void AddCommands(CLI::App& app, Command& chosen) {
    AddConvert(app, chosen);
    AddDecode(app, chosen);
    AddInfo(app, chosen);
    AddList(app, chosen);
    AddSettings(app, chosen);
    AddTags(app, chosen);
}
