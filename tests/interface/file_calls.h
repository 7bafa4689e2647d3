// What stands around the calls that go to a file: a host beside a folder of modules, a decoder that does as its
// script says, and a file for it.
#pragma once

#include <gtest/gtest.h>

#include <ostream>
#include <string>

#include "interface/host.h"
#include "modules/module_home.h"
#include "platform/module.h"

// Every module that is loaded while it stands must be let go again.
class LoadBalance {
  public:
    LoadBalance();
    // From here on a load fails while another module is held.
    void RefuseSecond() { mRefusesSecond = true; }
    int Loads() const { return mLoads; }
    int Held() const { return mHeld; }

  private:
    int mLoads = 0, mHeld = 0;
    bool mRefusesSecond = false;
    Faulty<platform::LoadLibraryW> mLoadCalls;
    Faulty<platform::FreeLibrary> mFreeCalls;
};

// What a host gets with a row.
struct Row {
    std::int32_t result;
    std::u16string name, value;
    bool operator==(const Row&) const = default;
};
void PrintTo(const Row& row, std::ostream* out);

class FileCalls : public testing::Test {
  protected:
    FileCalls() { host->moduleHandle = home.Self(); }
    // Whatever a test does, its calls leave no module and no instance behind.
    void TearDown() override;

    // The script of the decoder, from its next instance on.
    void Script(const std::string& lines) { module.SetScript("decodes|.qvf|A test\n" + lines); }
    // What the module was asked since the last time.
    std::string Journal();
    // The journal of one whole call that asks `asked` of a fresh instance.
    static std::string Asking(const std::string& asked) {
        return "Create\nGet Decodes 0\nCreate\n" + asked + "Destroy\nDestroy\n";
    }
    // A path as a journal writes it; test folders have ASCII names only.
    static std::string InJournal(const std::u16string& path) { return {path.begin(), path.end()}; }
    std::u16string Errors();
    std::u16string Info();
    void Remove(const std::u16string& path) const;

    const ManualTimers timers;
    Host host;
    const ModuleHome home;
    const PlacedModule module = home.Place(u"decoder/scripted", "scripted_decoder", "decodes|.qvf|A test\n");
    const std::u16string file = home.Folder().Write(u"song.qvf");
    const std::u16string missing = home.Folder() / u"missing.qvf";
    const std::u16string unknown = home.Folder().Write(u"song.unknown");
    LoadBalance balance;
    int refusedInstances = 0;  // those that the script wants the module not to make

  private:
    std::string mJournal;  // all that was taken of it
};
