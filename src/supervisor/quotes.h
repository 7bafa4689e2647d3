// Double quotes in text that will stand between double quotes in a converter's command.
#pragma once

class XLog;
class XString;

// Turns each double quote in `text` into the four characters "{qt}", which the converter turns back.
// Everything else, a "{qt}" that stood there before included, stays as it is. The trace shows the call under
// the name `function`.
void ReplaceQuotes(XString& text, const XLog& log, const char* function);
