// quaver: the library at the command line.
#include <CLI/CLI.hpp>
#include <new>
#include <string>
#include <vector>

#include "convert.h"
#include "exit_codes.h"
#include "platform/program.h"
#include "utf8.h"

namespace {

// "name=value" parted at the first equals sign; without one the value is empty.
ConvertOptions::Pair SplitPair(const std::string& text) {
    const std::size_t equals = text.find('=');
    if (equals == std::string::npos) return {FromUtf8(text), u""};
    return {FromUtf8(text.substr(0, equals)), FromUtf8(text.substr(equals + 1))};
}

struct ConvertArguments {
    std::string source, destination, encoder, settings;
    std::vector<std::string> effects, tags;
    bool dropTags = false, overwrite = false, quiet = false;

    ConvertOptions Options() const {
        ConvertOptions options;
        options.source = FromUtf8(source);
        options.destination = FromUtf8(destination);
        options.encoder = FromUtf8(encoder);
        options.settings = FromUtf8(settings);
        for (const std::string& effect : effects) options.effects.push_back(SplitPair(effect));
        for (const std::string& tag : tags) options.tags.push_back(SplitPair(tag));
        options.carryTags = !dropTags;
        options.overwrite = overwrite;
        options.quiet = quiet;
        return options;
    }
};

void DescribeConvert(CLI::App& convert, ConvertArguments& arguments) {
    convert.add_option("SOURCE", arguments.source, "The file to convert")->required();
    convert.add_option("DESTINATION", arguments.destination, "The file to make")->required();
    convert.add_option("-e,--encoder", arguments.encoder,
                       "The encoder; otherwise the destination's extension decides");
    convert.add_option("-s,--settings", arguments.settings, "The encoder's settings text");
    convert.add_option("--dsp", arguments.effects, "An effect as NAME=SETTINGS; may come several times")
        ->allow_extra_args(false);
    convert.add_option("-t,--tag", arguments.tags, "A tag as NAME=VALUE; may come several times")
        ->allow_extra_args(false);
    convert.add_flag("--no-tags", arguments.dropTags, "Leave the source's own tags behind");
    convert.add_flag("-f,--overwrite", arguments.overwrite, "Replace an existing destination");
    convert.add_flag("-q,--quiet", arguments.quiet, "Say nothing but errors");
}

ExitCode Run(const std::vector<std::u16string>& wideArguments) {
    CLI::App app("Converts audio files.", "quaver");
    app.set_version_flag("--version", "quaver " QV_VERSION);
    app.require_subcommand(1);
    app.footer("Exit codes: 0 done, 1 failed, 2 usage, 3 refused, 4 cancelled, 5 internal.");
    ConvertArguments arguments;
    CLI::App* convert = app.add_subcommand("convert", "Convert one file");
    DescribeConvert(*convert, arguments);

    // The parser takes its arguments last first.
    std::vector<std::string> reversed;
    for (auto i = wideArguments.rbegin(); i != wideArguments.rend(); ++i) reversed.push_back(ToUtf8(*i));
    try {
        app.parse(reversed);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? ExitCode::kDone : ExitCode::kUsage;
    }
    return RunConvert(arguments.Options());
}

}  // namespace

int platform::ProgramMain(const std::vector<std::u16string>& arguments) {
    try {
        return static_cast<int>(Run(arguments));
    } catch (const std::bad_alloc&) {
        platform::WriteConsoleText(platform::GetStdHandle(platform::kStdError), u"Out of memory\n");
        return static_cast<int>(ExitCode::kInternal);
    }
}
