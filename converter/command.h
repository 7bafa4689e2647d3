// Command: what a host orders, read from the text of a command file.
//
// The switches stand in one fixed order, each behind one blank, their values in double quotes:
//
//     -infile -outfile -convert_to -evtquit -evtwatchdog   always
//     -processor -priority                                 at most once
//     -dspeffect1 -dspeffect2 ...                          numbered without gaps, a blank behind each
//     -noidtag                                             at most once, without a value
//     -tag                                                 any number
//
// and what follows the last of them and one blank is the encoder's settings text, whatever it holds. Values
// can't hold a double quote, so the writer turns one inside settings and tags into {qt}; here it is turned
// back.
//
// Reading is strict. A switch that is missing, comes twice, out of order or without its closing quote makes
// the whole command invalid: a file name made to look like further switches can't smuggle one in.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

struct Command {
    struct Pair {
        std::u16string name;
        std::u16string value;
    };

    std::u16string source;
    std::u16string destination;
    std::u16string encoder;
    std::u16string cancelEvent;
    std::u16string watchdogEvent;
    std::int64_t processor = -1;  // -1 for all, n for the n-th alone
    std::uint32_t priority = 0;   // 0 normal, 1 low, 2 idle, 3 high
    std::vector<Pair> effects;    // name and settings, in the order they run
    bool carryTags = true;        // the source's own tags go along
    std::vector<Pair> tags;
    std::u16string settings;
};

struct CommandError {
    std::size_t position;  // 1-based, in 16-bit units
    std::u16string reason;
};

// Reads a command; on failure the result is empty and *error says where and why.
std::optional<Command> ParseCommand(std::u16string_view text, CommandError* error);
