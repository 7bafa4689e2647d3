// A host's dialog for panels to stand on. Where the system has windows it is a real one with real controls; elsewhere
// the window side is scripted, so that the same tests run on it.
#pragma once

#include <cstdint>
#include <memory>

#include "platform/controls.h"

class PanelStage {
  public:
    // As large as the settings forms, in a font of so many points, with two buttons of its own at their place.
    explicit PanelStage(std::int32_t points = 8);
    ~PanelStage();

    platform::Window Parent() const { return mParent; }
    void DestroyParent();

    // Numbers that grow when a window, or something to draw with, was left behind.
    std::uintptr_t FreshWindow();
    std::uintptr_t FreshDrawing();

  private:
    struct Side;
    std::unique_ptr<Side> mSide;
    platform::Window mParent = nullptr;
};
