// What a conversion of the scripted modules is played on. The encoder writes no file of its own, so what stands at the
// destination after a success is the temporary as it was created.
#pragma once

#include <gtest/gtest.h>

#include <memory>

#include "converter/conversion.h"
#include "converter/streams.h"
#include "modules/placed_module.h"
#include "platform/module.h"
#include "support/temp_folder.h"

inline bool Has(const std::u16string& text, std::u16string_view words) {
    return text.find(words) != std::u16string::npos;
}

class ConversionStage : public testing::Test {
  protected:
    ConversionStage() {
        command.source = folder / u"in.abc";
        command.destination = folder / u"out.wav";
        command.encoder = u"enc";
        command.carryTags = false;
    }

    // Carries the command out, by a program that stands in the folder with its modules beside it, and takes what
    // the host gets to read.
    ExitCode Run(const std::string& decoding, const std::string& encoding = {}) {
        decoder.SetScript("decodes|.abc|A test\n" + decoding);
        encoder.SetScript(encoding);
        folder.Write(u"out.wav", "old");
        Faulty<platform::GetModuleFileNameW> names;
        names.Replace([this](platform::ModuleHandle, char16_t* path, std::uint32_t) {
            const std::u16string self = folder / u"Quavercore";
            self.copy(path, self.size());
            path[self.size()] = 0;
            return static_cast<std::uint32_t>(self.size());
        });
        StandardStreams streams;
        Reporter reporter;
        const ExitCode result = Convert(command, *lifeline, reporter);
        output = streams.Output();
        errors = streams.Errors();
        const bool done = result == ExitCode::kDone;
        EXPECT_EQ(Has(output, u"Conversion complete\r\n"), done);
        EXPECT_EQ(folder.Read(u"out.wav"), done ? "" : "old");
        return result;
    }

    const TempFolder folder;
    const PlacedModule decoder{folder, u"decoder/dec", "scripted_decoder"};
    const PlacedModule encoder{folder, u"encoder/enc", "scripted_encoder"};
    Command command;
    std::unique_ptr<Lifeline> lifeline = std::make_unique<Lifeline>();
    std::u16string output, errors;
};
