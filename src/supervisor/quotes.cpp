// A quote would end the switch it stands in, so it travels as "{qt}". The text is built anew from the pieces
// between the quotes, so the time is linear however many there are.
#include "supervisor/quotes.h"

#include "foundation/log.h"
#include "foundation/wide_string.h"

void ReplaceQuotes(XString& text, const XLog& log, const char* function) {
    const XTraceScope trace(log, function);
    XString result;
    std::int32_t first = 1;
    while (const std::int32_t quote = text.Find(u'"', first)) {
        if (quote > first) result.Append(text.Mid(first, quote - 1).Text());
        result.Append(u"{qt}");
        first = quote + 1;
    }
    if (first == 1) return;
    if (first <= text.Length()) result.Append(text.MidToEnd(first).Text());
    text.Assign(result.Text(), result.Count());
}
