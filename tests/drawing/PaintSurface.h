#pragma once
// A picture to paint on, with the kind of render target that windows paint through.

#include <functional>

#include "drawing/Pictures.h"
#include "system/Handles.h"
#include "toolkit/UIElement.h"

namespace lumenor::tests {

class PaintSurface {
public:
  PaintSurface(int width, int height);

  /// Gives up the one render target that all surfaces share because the first one of a process is slow to make.
  static void ReleaseTarget();

  RenderTargetPtr Target() const { return target; }

  /// What `body` paints on a transparent ground.
  Picture Draw(const std::function<void()> &body);

  /// The pixels of a bitmap of this target, premultiplied.
  Picture PictureOf(ID2D1Bitmap *bitmap);

private:
  Picture DrawOn(int width, int height, const std::function<void()> &body);

  int width;
  int height;
  Microsoft::WRL::ComPtr<ID2D1DCRenderTarget> target;
};

} // namespace lumenor::tests
