// What makes a test module do as a test wants. A module NAME reads NAME.script beside itself whenever it
// makes an instance, and appends a line to NAME.journal for every call it gets; so a test controls and
// watches it in whichever process it is loaded, and however often it is unloaded in between.
//
// A script has one directive a line, its fields parted by '|', in 8-bit text. What a directive means stands
// with the module that knows it. All know:
//
//     create|0                 Create fails
//     instances|N              Create fails while N instances of the module are alive
//     say|ENTRY|error|TEXT     a message to the error (or info) channel whenever ENTRY is called
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "quavermill/module.h"

namespace script {

std::string Narrow(const QvChar* text);  // "(null)" for null
std::basic_string<QvChar> Wide(const std::string& text);
// "format 1/2/44100/16" of a format's first 18 bytes: tag, channels, rate, bits; told if its rates are 0.
std::string FormatText(const std::uint8_t* record);
// "8 sum 28 finished 0": the length of a block, what its bytes sum up to, and whether it is the last.
std::string BlockText(const clBlockRec& block);

class Script {
  public:
    using Fields = std::vector<std::string>;

    // The script beside this module.
    Script();

    // The fields behind the directive's name, a row for each line that has it.
    std::vector<Fields> Rows(std::string_view directive) const;
    bool Has(std::string_view directive) const { return !Rows(directive).empty(); }
    // A field of the first such line.
    std::string Text(std::string_view directive, std::size_t field = 0) const;
    std::int64_t Number(std::string_view directive, std::size_t field, std::int64_t otherwise) const;
    // The result of an entry whose directive is its name: success unless the script says 0.
    std::int32_t Result(std::string_view directive) const {
        return static_cast<std::int32_t>(Number(directive, 0, 1));
    }

  private:
    std::vector<Fields> mLines;
};

// What every instance has: its script, and a copy of the log record as modules must make one.
struct Instance {
    explicit Instance(const QvLog* givenLog);
    ~Instance();
    Instance(const Instance&) = delete;
    Instance& operator=(const Instance&) = delete;

    // Whether the script wants a module to make this one.
    bool Wanted() const;

    // Writes a call into the journal, and what the script wants said at it into the log.
    void Called(std::string_view entry, const std::string& details = {}) const;

    Script script;
    QvLog log;
};

// Makes an instance, or gives 0 when the script wants that; `entry` is Create's name.
template <class Kind>
QvInstance Make(const QvLog* log, std::string_view entry) {
    Kind* made = new Kind(log);
    made->Called(entry);
    if (made->Wanted()) return reinterpret_cast<QvInstance>(made);
    delete made;
    return 0;
}

// The instance behind the number, its call already in the journal.
template <class Kind>
Kind& Enter(QvInstance instance, std::string_view entry, const std::string& details = {}) {
    Kind& entered = *reinterpret_cast<Kind*>(instance);
    entered.Called(entry, details);
    return entered;
}

template <class Kind>
void End(QvInstance instance, std::string_view entry) {
    delete &Enter<Kind>(instance, entry);
}

// An encoder's or effect's settings panel without a window. Directive `panel|TEXT`: what RemoveConfigBit
// answers, null without TEXT; without the directive it is the settings that were shown.
struct PanelInstance : Instance {
    using Instance::Instance;

    void Show(std::string_view entry, std::uint64_t parent, std::int32_t x, std::int32_t y,
              const QvChar* settings);
    const QvChar* Remove(std::string_view entry, std::uint64_t parent);

    std::basic_string<QvChar> settings;
};

}  // namespace script
