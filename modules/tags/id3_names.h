// What the frames of an ID3v2 tag are called as rows: the one table, and back.
#pragma once

#include <string>
#include <string_view>

namespace id3 {

// The four letters of the text or link frame of a name, and the name of a frame; empty for none.
std::string_view FrameOfName(std::u16string_view name);
std::u16string NameOfFrame(std::string_view frame);

// The description under which a name without a frame of its own stands in a user text frame, and back. Most
// are the name itself.
std::u16string DescriptionOfName(const std::u16string& name);
std::u16string NameOfDescription(const std::u16string& description);

// A list of people says a role before each name: that of a row, and back. Empty for a row that is no role.
std::u16string RoleOfName(std::string_view frame, const std::u16string& name);
std::u16string NameOfRole(std::string_view frame, const std::u16string& role);
inline constexpr std::string_view kPeopleFrames[] = {"TIPL", "TMCL"};

// Genres as ID3 has them: a number is the genre of that number, and what stands in brackets before a text
// only refers to it.
std::u16string Genre(const std::u16string& text);

}  // namespace id3
