#include "toolkit/drawing/GlowButtonPainter.h"

#include <utility>

#include "system/HResultError.h"
#include "system/ImagePath.h"
#include "system/Log.h"
#include "system/Paths.h"
#include "toolkit/drawing/Button.h"
#include "toolkit/drawing/ButtonParts.h"
#include "toolkit/drawing/CommandNotFoundException.h"
#include "toolkit/drawing/ProgramAppearance.h"
#include "toolkit/drawing/WICHelper.h"
#include "toolkit/TextElement.h"

namespace lumenor {
namespace {

constexpr int haloRadius = 4; // pixels by which the halo is wider than the picture on every side
constexpr float opaque = 255.0F;

/// Where the shaded pictures of a button are kept, less their suffix.
std::wstring CacheBasePath(const std::wstring &picturePath) { return ImageCacheFolder() + FileNameOf(picturePath); }

D2D1_RECT_F Grown(const D2D1_RECT_F &rect, float distance) {
  return {rect.left - distance, rect.top - distance, rect.right + distance, rect.bottom + distance};
}

float Tenth(float length) { return static_cast<float>(static_cast<int>(static_cast<int>(length) * 0.1)); }

} // namespace

std::wstring FileNameOf(const std::wstring &path) {
  std::size_t separator = path.rfind(L'\\');
  if (separator != std::wstring::npos && separator + 1 == path.size())
    return path.substr(0, separator == 0 ? 0 : separator - 1);
  if (separator == std::wstring::npos)
    separator = path.rfind(L'/');
  return separator == std::wstring::npos ? std::wstring() : path.substr(separator + 1);
}

GlowButtonPainter::GlowButtonPainter(RenderTargetPtr renderTarget, unsigned insetImage, const std::wstring &text,
                                     const std::wstring &imagePath, const ButtonLayout &layout,
                                     const std::wstring &programPath)
    : text(text), imagePath(imagePath), programPath(programPath), layout(layout), insetImage(insetImage),
      renderTarget(std::move(renderTarget)),
      sizeListener(MakeListener<PropertyChangeEventArgs<long>>(this, &GlowButtonPainter::Layout)) {
  if (imagePath.empty())
    LoadProgramImage();
  else
    LoadFileImage();
}

void GlowButtonPainter::LoadProgramImage() {
  if (!PathExists(programPath))
    throw CommandNotFoundException();
  const std::wstring displayName = ProgramDisplayName(programPath);
  if (text.empty())
    text = displayName;
  source = ProgramImage(programPath);
  normalImage = LoadBitmapFromHBitmap(renderTarget.Get(), source.Get());
}

/// A folder is refused, since no variants can be made of it; whoever makes the painter then takes another picture.
void GlowButtonPainter::LoadFileImage() {
  if (!FileExists(imagePath) && PathExists(imagePath))
    throw HResultError(E_ACCESSDENIED);
  normalImage = LoadBitmapFromFile(renderTarget.Get(), imagePath, true);
}

void GlowButtonPainter::LoadVariants() {
  if (areVariantsLoaded)
    return;
  areVariantsLoaded = true;
  const std::wstring cacheBasePath = CacheBasePath(imagePath.empty() ? programPath : imagePath);
  hoverImage = LoadVariant(cacheBasePath + L".hover", CAdditiveColorShader(24, 24, 24));
  glowImage = LoadVariant(cacheBasePath + L".glow", COuterGlowShader(224, 224, 224, haloRadius, 0.6F));
  pressedImage = LoadVariant(cacheBasePath + L".pressed", CAdditiveColorShader(15, 25, 65));
  source.Reset();
}

GlowButtonPainter::BitmapPtr GlowButtonPainter::LoadVariant(const std::wstring &cachePath,
                                                            const IBitmapShader &shader) {
  try {
    return LoadShadedImage(cachePath, shader);
  } catch (const HResultError &error) {
    LogError("GlowButtonPainter: can't make %S, error %x", cachePath.c_str(), static_cast<unsigned>(error.Result()));
    return {};
  }
}

GlowButtonPainter::BitmapPtr GlowButtonPainter::LoadShadedImage(const std::wstring &cachePath,
                                                                const IBitmapShader &shader) {
  try {
    if (!PathExists(cachePath)) {
      if (const BitmapHandle shaded = ShadeSource(shader))
        SaveHBitmapAsPng(shaded.Get(), cachePath);
    }
    return LoadBitmapFromFile(renderTarget.Get(), cachePath, true);
  } catch (const std::exception &) {
    // Neither a cache that can't be written nor one that can't be read keeps the button from being shown.
    const BitmapHandle shaded = ShadeSource(shader);
    return shaded ? LoadBitmapFromHBitmap(renderTarget.Get(), shaded.Get()) : BitmapPtr();
  }
}

BitmapHandle GlowButtonPainter::ShadeSource(const IBitmapShader &shader) {
  if (!source)
    source = LoadHBitmapFromFile(imagePath);
  return source ? shader.Shade(source.Get()) : BitmapHandle();
}

void GlowButtonPainter::Paint(RenderTargetPtr target, const D2D1_RECT_F *rect) {
  if (!IsButtonVisible())
    return;
  const bool isMouseOver = button->IsMouseOver.Get() != 0;
  const bool isPressed = button->IsPressed.Get() != 0;
  const D2D1_RECT_F imageRectangle = ImageRectangle(*rect);
  if (isMouseOver && !isPressed)
    DrawImage(target.Get(), glowImage.Get(), Grown(insetImage != 0 ? *rect : imageRectangle, haloRadius));
  const BitmapPtr &unpressedImage = isMouseOver ? hoverImage : normalImage;
  const BitmapPtr &image = isPressed ? pressedImage : unpressedImage;
  DrawImage(target.Get(), (image ? image : normalImage).Get(), imageRectangle);
  if (!text.empty())
    button->PaintChild(target, (isMouseOver ? hoverText : normalText).get(), rect);
}

void GlowButtonPainter::DrawImage(ID2D1RenderTarget *target, ID2D1Bitmap *image, const D2D1_RECT_F &rect) const {
  if (image != nullptr)
    target->DrawBitmap(image, &rect, static_cast<float>(button->Opacity.Get()) / opaque,
                       D2D1_BITMAP_INTERPOLATION_MODE_LINEAR, nullptr);
}

D2D1_RECT_F GlowButtonPainter::ImageRectangle(const D2D1_RECT_F &rect) const {
  if (insetImage == 0)
    return PictureRectangle(layout, rect);
  const float dx = Tenth(rect.right - rect.left);
  const float dy = Tenth(rect.bottom - rect.top);
  return {rect.left + dx, rect.top + dy, rect.right - dx, rect.bottom - dy};
}

void GlowButtonPainter::Attach(Button *newButton) {
  Detach();
  IButtonPainter::Attach(newButton);
  newButton->Width.changed.AddListener(sizeListener.get());
  newButton->Height.changed.AddListener(sizeListener.get());
  Layout();
  newButton->RunOnceShown([attached = weak_from_this()] {
    if (const auto painter = attached.lock())
      painter->LoadVariants();
  });
}

void GlowButtonPainter::Detach() {
  if (button != nullptr) {
    button->Width.changed.RemoveListener(sizeListener.get());
    button->Height.changed.RemoveListener(sizeListener.get());
  }
  IButtonPainter::Detach();
}

void GlowButtonPainter::Layout() {
  normalText = MakeButtonLabel(renderTarget, text, layout, *button);
  hoverText = MakeButtonLabel(renderTarget, text, layout, *button);
}

} // namespace lumenor
