#include "modules/support/property_text.h"

#include "foundation/joined.h"

namespace {

XString Padded(std::uint64_t number, std::int32_t digits) {
    XString text = NumberText(number);
    while (text.Length() < digits) text.Insert(u"0", 1);
    return text;
}

}  // namespace

XString NumberText(std::uint64_t number) {
    return XString::FromUInt64(number);
}

XString UnitText(std::uint64_t number, const char16_t* unit) {
    return Joined({NumberText(number).Text(), u" ", unit});
}

XString DurationText(std::uint64_t ms) {
    return Joined({NumberText(ms / 3600000).Text(), u":", Padded(ms / 60000 % 60, 2).Text(), u":",
                   Padded(ms / 1000 % 60, 2).Text(), u".", Padded(ms % 1000, 3).Text()});
}
