#pragma once
// A picture in memory and the kind of render target that the product draws with, bound to it: what is drawn can be read
// back, pixel by pixel.

#include <cstdint>
#include <functional>
#include <vector>

#include "system/Handles.h"
#include "system/Windows.h"

#include <d2d1.h>
#include <wrl/client.h>

namespace lumenor::tests {

class RenderSurface {
public:
  /// Transparent at first, and bound.
  RenderSurface(int width, int height);
  ~RenderSurface();
  RenderSurface(const RenderSurface &) = delete;
  RenderSurface &operator=(const RenderSurface &) = delete;

  Microsoft::WRL::ComPtr<ID2D1RenderTarget> Target() const { return target; }

  /// Clears to transparent, lets `body` draw, and returns the pixels 0xAARRGGBB, premultiplied, row after row from the
  /// top. Raises HResultError when the drawing failed.
  std::vector<std::uint32_t> Draw(const std::function<void()> &body);

  /// The pixel of the last drawing at (`x`, `y`).
  std::uint32_t At(int x, int y) const { return pixels.at(static_cast<std::size_t>(y * width + x)); }

private:
  int width;
  std::vector<std::uint32_t> pixels;
  Microsoft::WRL::ComPtr<ID2D1DCRenderTarget> target;
  void *bits = nullptr;
  MemoryDeviceContext context;
  BitmapHandle bitmap;
  SelectedObject selected;
};

} // namespace lumenor::tests
