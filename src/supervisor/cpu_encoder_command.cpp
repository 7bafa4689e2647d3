// The converter's command. The switches stand in a temporary file and the command line names only that file,
// so no path, tag or settings text is too long for a command line. The file is the bare 16-bit text: no byte
// order mark, no NUL, no line end. Only tags have their quotes replaced; a path or name with a quote in it
// ends its switch early.
#include "foundation/file.h"
#include "foundation/paths.h"
#include "foundation/priorities.h"
#include "platform/clock.h"
#include "platform/error.h"
#include "platform/file.h"
#include "platform/names.h"
#include "platform/synchronisation.h"
#include "supervisor/cpu_encoder.h"
#include "supervisor/quotes.h"

namespace {

// A name that no other event has, as long as the system's tick moves on between two of them.
XString NameForNow(const char16_t* prefix) {
    XString name(prefix);
    name.Append(XString(static_cast<std::int32_t>(platform::GetTickCount())).Text());
    return name;
}

// Puts a new event in the place of the one that is held. True when somebody had one of this name already:
// then that is the one held now.
bool ReplaceEvent(platform::Handle& event, const XString& name) {
    if (event != platform::kNullHandle) platform::CloseHandle(event);
    event = platform::kNullHandle;
    platform::SetLastError(platform::kErrorSuccess);
    event = platform::CreateEventW(name.Text());
    return platform::GetLastError() == platform::kErrorAlreadyExists;
}

void AppendSwitch(XString& text, const char16_t* name, const char16_t* value) {
    for (const char16_t* piece : {name, u"\"", value, u"\""}) text.Append(piece);
}

}  // namespace

struct CPUEncoder::Command {
    const XString& settings;
    bool writeThrough;
    const clIDTagList& tags;
    XString cancelName;
    XString watchdogName;
};

void CPUEncoder::StartThisEncoder(const XString& source, const XString& destination, const XString& settings,
                                  bool writeThrough, const clIDTagList& tags) {
    const XTraceScope trace(log, "CPUEncoder::StartThisEncoder");
    StartEncoder(source, destination, settings, writeThrough, tags);
}

void CPUEncoder::StartEncoder(const XString& source, const XString& destination, const XString& settings,
                              bool writeThrough, const clIDTagList& tags) {
    const char* const function = "CPUEncoder::StartEncoder";
    const XTraceScope trace(log, function);
    BeginRun(source, destination);
    Command command{settings, writeThrough, tags, MakeCancelEvent(), MakeWatchdogEvent()};
    commandFile.Generate();
    if (!WriteCommandFile(command)) {
        // Told, and the converter is started all the same: it will say for itself what it misses.
        XString error(u"Error creating qvcmd temporary file '");
        error.Append(commandFile.Text());
        error.Append(u"'");
        XLog::Error(error.Text(), log, nullptr);
    }
    const XString commandLine = CommandLine();
    XLog::Write(commandLine.Text(), log, function, true, nullptr);
    if (!RunConverter(commandLine)) return;
    watchdogTick = platform::GetTickCount();
    running = 1;
}

// What the child was doing last stays on show until the new one says what it does.
void CPUEncoder::BeginRun(const XString& source, const XString& destination) {
    sourceFile = source;
    destinationFile = destination;
    percent = 0;
    rotationTick = 0;
    paused = 0;
    actionInputText.Assign(u"", 1);
    actionOutputText.Assign(u"", 1);
}

// The event must be this run's own, or another run's cancel would end it: a name that is taken is tried again
// until the tick has moved.
XString CPUEncoder::MakeCancelEvent() {
    XString name;
    do {
        name = NameForNow(u"qvevt-cancel-");
        cancelEventExisted = ReplaceEvent(cancelEvent, name);
    } while (cancelEventExisted);
    return name;
}

// One attempt, unlike the cancel event: a name that is taken is shared with the run that has it, and the
// worst of that is a sign of life too many.
XString CPUEncoder::MakeWatchdogEvent() {
    const XString name = NameForNow(u"qvevt-watch-");
    watchdogEventExisted = ReplaceEvent(watchdogEvent, name);
    return name;
}

bool CPUEncoder::WriteCommandFile(const Command& command) {
    XFile file(commandFile);
    if (!file.Create()) return false;
    const XString text = CommandText(command);
    return file.Write(text.Text(), 2 * static_cast<std::uint32_t>(text.Length()));
}

XString CPUEncoder::CommandText(const Command& command) {
    XString text;
    AppendSwitch(text, u" -infile=", sourceFile.Text());
    AppendSwitch(text, u" -outfile=", destinationFile.Text());
    AppendSwitch(text, u" -convert_to=", encoderName.Text());
    AppendSwitch(text, u" -evtquit=", command.cancelName.Text());
    AppendSwitch(text, u" -evtwatchdog=", command.watchdogName.Text());
    if (processor != 0)
        AppendSwitch(text, u" -processor=", XString(static_cast<std::int32_t>(processor)).Text());
    if (const char16_t* level = LevelOf(priority).name) AppendSwitch(text, u" -priority=", level);
    if (!dspArguments.IsEmpty()) {
        text.Append(u" ");
        text.Append(dspArguments.Text());
    }
    if (!command.writeThrough) text.Append(u" -noidtag");
    AppendTags(text, command.tags);
    text.Append(u" ");  // also before settings that are empty
    text.Append(command.settings.Text());
    return text;
}

void CPUEncoder::AppendTags(XString& text, const clIDTagList& tags) {
    for (std::int32_t index = 0; index < tags.Count(); ++index) {
        const IDTagRow& row = tags.At(index);
        if (row.value.IsEmpty()) continue;
        XString name(row.name), value(row.value);
        ReplaceQuotes(name);
        ReplaceQuotes(value);
        name.Append(u"=");
        name.Append(value.Text());
        AppendSwitch(text, u" -tag=", name.Text());
    }
}

// Empty, and so refused by the system, where the library can't tell its own place: a program of that name in
// the current folder is not the converter.
XString CPUEncoder::CommandLine() const {
    XString line = paths::GetModuleFolder(moduleHandle);
    if (line.IsEmpty()) return line;
    line.Append(platform::kConverterFileName);
    line.Quote();
    AppendSwitch(line, u" -qvcmd=", commandFile.Text());
    return line;
}

void CPUEncoder::ReplaceQuotes(XString& text) {
    ::ReplaceQuotes(text, log, "CPUEncoder::ReplaceQuotes");
}
