// Converters that the tests start in the place of the real one.
#include "interface/host.h"
#include "platform/file.h"
#include "platform/program.h"
#include "supervisor/converter_side.h"
#include "support/child.h"

// Ends at once.
CHILD_PROGRAM(Quiet) {
    return 0;
}

// Says what it is told to and ends when it is told to.
CHILD_PROGRAM(Worker) {
    const ConverterSide side(argc, argv);
    side.Say(u"MSGTO: qMC: PCDone: 37\r\nplain words\r\n");
    side.Tell("first");
    side.WaitFor("go");
    side.Say(u"MSGTO: qMC: PCDone: 250\r\nEncoding finished\r\n");
    side.Tell("second");
    side.WaitFor("end");
    side.Complain(u"sour words\r\n");
    side.Say(u"last words\r\n");
    return 1;
}

// Works until it is cancelled.
CHILD_PROGRAM(Endless) {
    ConverterSide side(argc, argv);
    side.OpenEvents();
    side.Tell("first");
    return side.WaitForCancel() ? 0 : 1;
}

// Outlives its host's interest: tells once a write finds no reader any more.
CHILD_PROGRAM(Orphan) {
    const ConverterSide side(argc, argv);
    side.Tell("first");
    side.WaitFor("go");
    const platform::Handle output = platform::GetStdHandle(platform::kStdOutput);
    std::uint32_t written = 0;
    if (!platform::WriteFile(output, "x", 1, &written)) side.Tell("second");
    side.WaitFor("end");
    return 0;
}
