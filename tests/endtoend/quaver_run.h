// quaver run to its end: what it says, how it ends, and what it leaves on the disk.
#pragma once

#include <set>
#include <string>
#include <vector>

#include "endtoend/program.h"
#include "endtoend/recordings.h"
#include "endtoend/stage.h"

using Arguments = std::vector<std::u16string>;

enum Exit : std::uint32_t {
    kDone = 0,
    kFailed = 1,
    kUsage = 2,
    kRefused = 3,
    kCancelled = 4,
    kSomeFailed = 6,
    kDamaged = 7,
    kOutput = 8
};

class QuaverRun : public Stage {
  protected:
    // Runs quaver to its end and expects this exit code and, somewhere on standard error, these words.
    void Expect(const Arguments& arguments, Exit exit, const std::string& words = "") {
        Quaver quaver(arguments);
        EXPECT_EQ(quaver.Finish(), exit);
        output = quaver.Output();
        errors = quaver.Errors();
        EXPECT_NE(errors.find(words), std::string::npos) << errors;
    }
    void ExpectNothingWritten(const Arguments& arguments, Exit exit, const std::string& words) {
        const std::set<std::u16string> before = NamesIn(files.Path());
        Expect(arguments, exit, words);
        EXPECT_EQ(NamesIn(files.Path()), before);
    }
    void ExpectOutput(const std::string& words) const {
        EXPECT_NE(output.find(words), std::string::npos) << output;
    }

    std::string output, errors;
};
