// Converters of every temper, each a child of the test program.
#include <cstdlib>
#include <thread>

#include "platform/clock.h"
#include "supervisor/converter_side.h"
#include "supervisor/doubles.h"
#include "support/child.h"

namespace {

std::u16string Repeated(std::u16string_view text, std::size_t count) {
    std::u16string all;
    for (std::size_t index = 0; index < count; ++index) all += text;
    return all;
}

}  // namespace

CHILD_PROGRAM(leaves) {
    return 0;
}

CHILD_PROGRAM(converts) {
    ConverterSide side(argc, argv);
    side.OpenEvents();
    side.SignLife();
    side.Say(u"MSGTO: qMC: Action: Converting\r\n");
    side.Say(u"MSGTO: qMC: PCDone: 50\r\n");
    side.Say(u"MSGTO: qMC: PCDone: 100\r\n");
    return 0;
}

CHILD_PROGRAM(obeys_cancel) {
    ConverterSide side(argc, argv);
    side.OpenEvents();
    side.SignLife();
    side.Tell("ready");
    if (side.WaitForCancel()) side.Say(u"cancelled\r\n");
    return 3;
}

CHILD_PROGRAM(opens_late) {
    ConverterSide side(argc, argv);
    side.Tell("ready");
    side.WaitFor("go");
    side.OpenEvents();
    if (side.WaitForCancel()) side.Say(u"cancelled\r\n");
    return 0;
}

// Gives no sign of life and looks at no event of the supervisor's.
CHILD_PROGRAM(hangs) {
    ConverterSide side(argc, argv);
    side.Tell("ready");
    side.WaitFor("bye");
    side.Tell("gone");
    return 0;
}

CHILD_PROGRAM(signals_for_ever) {
    ConverterSide side(argc, argv);
    side.OpenEvents();
    side.Tell("ready");
    for (int round = 0; round < 60000 && !side.IsSet("bye"); ++round) {
        side.SignLife();
        platform::Sleep(1);
    }
    return 0;
}

CHILD_PROGRAM(crashes) {
    ConverterSide side(argc, argv);
    side.Say(u"MSGTO: qMC: PCDone: 40\r\n");
    side.Complain(u"the source is damaged\r\n");
    std::abort();
}

CHILD_PROGRAM(speaks_when_told) {
    ConverterSide side(argc, argv);
    side.Tell("ready");
    side.WaitFor("go");
    side.Say(u"last words\r\nMSGTO: qMC: PCDone: 77\r\n");
    side.Complain(u"last complaint\r\n");
    return 0;
}

CHILD_PROGRAM(fills_both_streams) {
    ConverterSide side(argc, argv);
    std::thread complaints([&side] { side.Complain(Repeated(kComplaint, kFloodLines)); });
    side.Say(Repeated(kRemark, kFloodLines));
    complaints.join();
    return 0;
}

CHILD_PROGRAM(never_ends_a_line) {
    ConverterSide side(argc, argv);
    const std::u16string piece(kLongPiece, u'x');
    for (int index = 0; index < kLongPieces; ++index) side.Say(piece);
    return 0;
}

CHILD_PROGRAM(writes_many_lines) {
    ConverterSide side(argc, argv);
    const std::u16string lines = Repeated(u"a line\r\n", 100);
    for (int index = 0; index < kManyLines; index += 100) side.Say(lines);
    return 0;
}

// One message for each place where it can be cut, every half in a write of its own and read before the next
// one.
CHILD_PROGRAM(cuts_each_message) {
    ConverterSide side(argc, argv);
    const std::u16string_view message = kCutMessage;
    for (std::size_t cut = 1; cut < 2 * message.size(); ++cut) {
        side.SayBytes(message.data(), 0, cut);
        side.Tell("half");
        if (!side.WaitFor("more")) return 1;
        side.Clear("more");
        side.SayBytes(message.data(), cut, 2 * message.size());
        side.Tell("half");
        if (!side.WaitFor("more")) return 1;
        side.Clear("more");
    }
    return 0;
}
