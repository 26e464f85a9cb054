#pragma once
// The element that shows one picture, stretched over the rectangle that it is given. User-interface thread only.

#include <string>

#include "toolkit/UIElement.h"

namespace lumenor {

/// Shows one bitmap. Publishes the bitmap's size as DesiredWidth and DesiredHeight.
class ImageElement : public UIElement {
public:
  /// The picture of a file at its full size; the built-in picture where there is no such file. Raises HResultError
  /// where the file isn't a picture.
  ImageElement(const std::wstring &imagePath, RenderTargetPtr renderTarget);

  /// The picture in a resource of the program. Raises HResultError where there is none.
  ImageElement(const std::wstring &resourceName, const std::wstring &resourceType, RenderTargetPtr renderTarget);

  /// Draws the whole bitmap into `rect`, opaque whatever the element's Opacity.
  void Paint(RenderTargetPtr target, const D2D1_RECT_F *rect) override;

  /// Sets DesiredHeight to what DesiredWidth asks for at the proportions of the bitmap.
  void KeepAspect();

private:
  void PublishSize();

  Microsoft::WRL::ComPtr<ID2D1Bitmap> bitmap;
};

} // namespace lumenor
