// A form that is opened again and again leaves nothing behind, nor does one in which memory ends.
//
// The modules are plain C: on Windows each load of one that uses much of the C++ library costs its process a slot for
// the values of threads, of which there are a thousand.
#include "settings/dsp_form.h"
#include "settings/form_stage.h"
#include "settings/settings_form.h"
#include "support/allocation_faults.h"
#include "support/handle_gauge.h"

namespace {

class Endurance : public FormStage {
  protected:
    template <class Form>
    void ShowOften() {
        dialog.user = [this] { dialog.Click(ScriptedDialog::kOK); };
        Show<Form>(u"whole", u"");
        const HandleGauge before;
        for (int i = 0; i < 500; ++i) Show<Form>(u"whole", u"");
        EXPECT_EQ(HandleGauge(), before);
        EXPECT_EQ(dialog.shown, 501);
        EXPECT_EQ(gWindowTable.Count(), 0);
        ExpectLeft(u"whole", u"", 1);
    }

    const PlacedModule encoder = home.Place(u"encoder/whole", "whole_encoder");
    const PlacedModule effect = home.Place(u"DSPs/whole", "whole_effect");
};

}  // namespace

TEST_F(Endurance, Of_the_form_of_encoders) {
    ShowOften<clSettingsFrm>();
}

TEST_F(Endurance, Of_the_form_of_effects) {
    ShowOften<clDSPFrm>();
}

// Wherever it happens while the form is up: the form closes, and only then does the caller hear of it.
TEST_F(Endurance, Of_a_form_in_which_memory_ends) {
    const PlacedModule other = home.Place(u"encoder/other", "whole_encoder");
    for (int call = 1, failed = 1; failed != 0; ++call) {
        bool raised = false;
        dialog.user = [&] {
            const std::int32_t row = RowOf(u"other");
            AllocationFaults memory;
            memory.FailCall(call);
            dialog.Pick(row);
            failed = memory.HasFailed();
        };
        try {
            Show<clSettingsFrm>(u"whole", u"");
        } catch (const std::bad_alloc&) {
            raised = true;
        }
        EXPECT_EQ(raised, failed != 0) << "allocation " << call;
        EXPECT_EQ(gWindowTable.Count(), 0);
        ASSERT_LT(call, 1000);
    }
}
