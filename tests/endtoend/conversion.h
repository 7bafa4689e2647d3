// A host of the built library: it orders conversions and polls them to their end.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "endtoend/library.h"

struct Order {
    using Pair = std::pair<std::u16string, std::u16string>;

    std::u16string source, destination;
    std::u16string encoder = u"Wave", settings = u"";
    std::vector<Pair> tags = {}, effects = {};
    bool carryTags = true;
    std::int32_t processor = -1;
};

// What a host sees of a conversion.
struct Outcome {
    bool started = false, ended = false;
    std::u16string errors, information;
    std::vector<std::uint32_t> percents;  // of every poll

    std::uint32_t Percent() const { return percents.empty() ? 0 : percents.back(); }
    // Whether the information holds this line.
    bool Says(const std::u16string& line) const;
    bool Succeeded() const { return ended && errors.empty() && Says(u"Conversion complete"); }
};

class Host {
  public:
    explicit Host(const Library& library);
    ~Host() { mLibrary.QACDestroy(mConverter); }
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;

    QvConverter* Handle() const { return mConverter; }

    // From the order to the end; within a minute, or `ended` stays false.
    Outcome Convert(const Order& order);

    // The same in steps. One poll every few milliseconds; true until the conversion has ended.
    Outcome Start(const Order& order);
    bool Poll(Outcome& outcome);
    void Finish(Outcome& outcome);

  private:
    std::u16string Take(decltype(&QACGetLastError) get);

    const Library& mLibrary;
    QvConverter* const mConverter;
    std::vector<QvChar> mText;
};
