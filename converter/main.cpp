// Quavercore: converts one file, as a host's command file orders, and tells the host how it goes.
//
//     Quavercore -qvcmd=COMMANDFILE
//
// The road through the program: the command file becomes a Command (command.h), the host's two events a
// Lifeline (lifeline.h), and Convert (conversion.h) does the work. Text for the host goes through the
// Reporter (reporter.h).
#include <new>
#include <string>
#include <vector>

#include "converter/command.h"
#include "converter/command_file.h"
#include "converter/conversion.h"
#include "converter/exit_codes.h"
#include "converter/lifeline.h"
#include "converter/reporter.h"
#include "foundation/log.h"
#include "foundation/priorities.h"
#include "platform/process.h"
#include "platform/program.h"

namespace {

constexpr std::u16string_view kCommandSwitch = u"-qvcmd=";

std::u16string Decimal(std::size_t number) {
    const std::string digits = std::to_string(number);
    return {digits.begin(), digits.end()};
}

// Runs on the one processor that was asked for. A machine that does not have it converts all the same.
void ChooseProcessor(std::int64_t processor, Reporter& reporter) {
    if (processor < 1) return;
    if (processor > 64 || !platform::SetProcessAffinityMask(std::uint64_t{1} << (processor - 1))) {
        reporter.Information(u"Processor " + Decimal(static_cast<std::size_t>(processor)) +
                             u" can't be chosen");
    }
}

// What a host asks for from the start. A system that does not allow it converts all the same.
void ChoosePriority(std::uint32_t priority, Reporter& reporter) {
    const PriorityLevel& level = LevelOf(priority);
    if (level.name && !platform::SetOwnPriority(level.thread, level.processClass))
        reporter.Information(std::u16string(u"The priority ") + level.name + u" can't be chosen");
}

ExitCode Obey(const std::u16string& commandFile, Reporter& reporter) {
    std::u16string text;
    if (!TakeCommandFile(commandFile, &text)) {
        reporter.Error(u"Can't read the command file '" + commandFile + u"'");
        return ExitCode::kBadCommand;
    }
    CommandError error;
    const std::optional<Command> command = ParseCommand(text, &error);
    if (!command) {
        reporter.Error(u"Error in the command at position " + Decimal(error.position) + u": " + error.reason);
        return ExitCode::kBadCommand;
    }
    Lifeline lifeline;
    std::u16string missing;
    if (!lifeline.Start(command->cancelEvent, command->watchdogEvent, &missing)) {
        reporter.Error(u"The event '" + missing + u"' is missing");
        return ExitCode::kNoEvents;
    }
    ChooseProcessor(command->processor, reporter);
    ChoosePriority(command->priority, reporter);
    const ExitCode result = Convert(*command, lifeline, reporter);
    if (result == ExitCode::kCancelled) reporter.Information(u"Conversion cancelled");
    return result;
}

ExitCode Run(const std::vector<std::u16string>& arguments, Reporter& reporter) {
    if (arguments.size() != 1 || !arguments[0].starts_with(kCommandSwitch)) {
        reporter.Error(u"Quavercore is started by its host, with -qvcmd= and the name of a command file");
        return ExitCode::kBadCommand;
    }
    try {
        return Obey(arguments[0].substr(kCommandSwitch.size()), reporter);
    } catch (const std::bad_alloc&) {
        reporter.Error(u"Out of memory");
    } catch (...) {
        reporter.Error(u"An unexpected failure, of a module or of the converter itself");
    }
    return ExitCode::kInternal;
}

}  // namespace

int platform::ProgramMain(const std::vector<std::u16string>& arguments) {
    XLog::StartUp();
    Reporter reporter;
    const ExitCode result = Run(arguments, reporter);
    XLog::ShutDown();
    return static_cast<int>(result);
}
