#include "toolkit/drawing/ImageElement.h"

#include "toolkit/drawing/WICHelper.h"

namespace lumenor {

ImageElement::ImageElement(const std::wstring &imagePath, RenderTargetPtr renderTarget)
    : bitmap(LoadBitmapFromFile(renderTarget.Get(), imagePath, false)) {
  PublishSize();
}

ImageElement::ImageElement(const std::wstring &resourceName, const std::wstring &resourceType,
                           RenderTargetPtr renderTarget)
    : bitmap(LoadBitmapFromResource(renderTarget.Get(), resourceName, resourceType)) {
  PublishSize();
}

void ImageElement::Paint(RenderTargetPtr target, const D2D1_RECT_F *rect) {
  target->DrawBitmap(bitmap.Get(), rect, 1.0F, D2D1_BITMAP_INTERPOLATION_MODE_LINEAR, nullptr);
}

void ImageElement::KeepAspect() {
  const D2D1_SIZE_F size = bitmap->GetSize();
  DesiredHeight.Set(static_cast<long>(static_cast<float>(DesiredWidth.Get()) / size.width * size.height));
}

void ImageElement::PublishSize() {
  const D2D1_SIZE_F size = bitmap->GetSize();
  DesiredHeight.Set(static_cast<long>(size.height));
  DesiredWidth.Set(static_cast<long>(size.width));
}

} // namespace lumenor
