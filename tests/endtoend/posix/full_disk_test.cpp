// A disk that takes no more, for which a limit on the size of files stands: the system refuses the write in
// the same way.
#include <sys/resource.h>

#include <filesystem>

#include "endtoend/program.h"
#include "endtoend/recordings.h"
#include "endtoend/stage.h"

namespace fs = std::filesystem;

namespace {

// For every process that is started meanwhile.
class FileSizeLimit {
  public:
    explicit FileSizeLimit(rlim_t bytes) {
        getrlimit(RLIMIT_FSIZE, &mFormer);
        const rlimit limit = {bytes, mFormer.rlim_max};
        EXPECT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
    }
    ~FileSizeLimit() { setrlimit(RLIMIT_FSIZE, &mFormer); }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

  private:
    rlimit mFormer{};
};

class FullDisk : public Stage {
  protected:
    FullDisk() { files.Write(u"in.wav", Recording(4 << 20)); }

    void ExpectFailure(std::u16string option) const {
        const auto start = [&] {
            const FileSizeLimit limit(2 << 20);
            return Quaver({u"convert", option, files / u"in.wav", files / u"out.wav"});
        };
        const std::set<std::u16string> before = NamesIn(files.Path());
        Quaver quaver = start();
        EXPECT_EQ(quaver.Finish(), 1u);
        const std::string words = "Can't write '" + fs::path(files / u"out.wav").string() + "'";
        EXPECT_NE(quaver.Errors().find(words), std::string::npos) << quaver.Errors();
        EXPECT_NE(quaver.Errors().find("The conversion failed; nothing was written."), std::string::npos);
        EXPECT_EQ(NamesIn(files.Path()), before);
    }
};

}  // namespace

TEST_F(FullDisk, Fails_the_conversion_with_a_reason_and_leaves_nothing) {
    ExpectFailure(u"--quiet");
}

TEST_F(FullDisk, Leaves_an_existing_destination_alone) {
    const std::string old = Recording(1000, 7);
    files.Write(u"out.wav", old);
    ExpectFailure(u"--overwrite");
    EXPECT_EQ(files.Read(u"out.wav"), old);
}
