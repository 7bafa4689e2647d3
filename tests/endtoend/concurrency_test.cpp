// Several handles at once, each in a thread of its own, all in one folder and under names that begin alike.
#include <thread>

#include "endtoend/conversion.h"
#include "endtoend/recordings.h"
#include "endtoend/stage.h"
#include "support/effort.h"

namespace {

constexpr int kConversions = Times(50, 25, 20);  // of each thread

class SideBySide : public Stage {
  protected:
    // One thread's share. The result is how many of its conversions were right.
    int Convert(std::uint32_t thread) const {
        Host host(library);
        int right = 0;
        for (int number = 0; number < kConversions; ++number) {
            const std::u16string stem = u"song." + std::u16string(thread, u'x');
            const auto content = static_cast<std::uint32_t>(number) * 10 + thread;
            const std::u16string source = files.Write(stem + u"in.wav", Recording(50000, content));
            const std::u16string destination = files / (stem + u"out.wav");
            const Outcome outcome = host.Convert({source, destination});
            if (!outcome.Succeeded() || !HaveSameAudio(source, destination)) {
                ADD_FAILURE() << number << " of " << thread << ": " << testing::PrintToString(outcome.errors);
                break;  // what is stuck would be waited for again and again
            }
            ++right;
        }
        return right;
    }

    void ConvertInThreads(std::uint32_t count) const {
        std::vector<int> right(count);
        std::vector<std::thread> threads;
        for (std::uint32_t thread = 0; thread < count; ++thread)
            threads.emplace_back([&, thread] { right[thread] = Convert(thread); });
        for (std::thread& thread : threads) thread.join();
        EXPECT_EQ(right, std::vector<int>(count, kConversions));
        EXPECT_EQ(NamesIn(files.Path()).size(), count * std::size_t{2});
    }
};

}  // namespace

TEST_F(SideBySide, Two_handles_do_not_disturb_each_other) {
    ConvertInThreads(2);
}

TEST_F(SideBySide, Eight_handles_do_not_disturb_each_other) {
    ConvertInThreads(8);
}
