// Drawing objects for the length of a scope: made, selected, and given back in the reverse order.
#pragma once

#include "platform/drawing.h"

// Owns a brush, pen or font and keeps it selected into a context; null does nothing.
class DrawingTool {
  public:
    DrawingTool(platform::DeviceContext dc, platform::DrawingObject* object) : mDC(dc), mObject(object) {
        if (mObject) mOld = platform::SelectObject(mDC, mObject);
    }
    ~DrawingTool() {
        if (mOld) platform::SelectObject(mDC, mOld);
        if (mObject) platform::DeleteObject(mObject);
    }
    DrawingTool(const DrawingTool&) = delete;
    DrawingTool& operator=(const DrawingTool&) = delete;

  private:
    platform::DeviceContext mDC;
    platform::DrawingObject* mObject;
    platform::DrawingObject* mOld = nullptr;
};

// What is clipped in this scope is clipped to its end only.
class ClipScope {
  public:
    explicit ClipScope(platform::DeviceContext dc) : mDC(dc), mSaved(platform::SaveDC(dc)) {}
    ~ClipScope() {
        if (mSaved) platform::RestoreDC(mDC, mSaved);
    }
    ClipScope(const ClipScope&) = delete;
    ClipScope& operator=(const ClipScope&) = delete;

  private:
    platform::DeviceContext mDC;
    std::int32_t mSaved;
};

// The context of the whole screen.
class ScreenContext {
  public:
    ScreenContext() : mDC(platform::GetDC(nullptr)) {}
    ~ScreenContext() {
        if (mDC) platform::ReleaseDC(nullptr, mDC);
    }
    ScreenContext(const ScreenContext&) = delete;
    ScreenContext& operator=(const ScreenContext&) = delete;

    operator platform::DeviceContext() const { return mDC; }

  private:
    platform::DeviceContext mDC;
};
