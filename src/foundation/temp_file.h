// XTempFile: the name of a temporary file and its owner: the file goes with the object or its next name.
#pragma once

#include "foundation/wide_string.h"

class XTempFile : public XString {
  public:
    XTempFile() = default;
    XTempFile(const XTempFile&) = delete;
    XTempFile& operator=(const XTempFile&) = delete;
    ~XTempFile();

    // Takes a new name; the file then exists and is empty, unless the folder can't be written to, which shows
    // when it is opened.
    void Generate();
};
