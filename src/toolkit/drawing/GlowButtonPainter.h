#pragma once
// The look of the bar's buttons: a picture with a hover, a glow and a pressed variant, and a label. The variants are
// shaded once per picture and machine, into the image cache. User-interface thread only.

#include <memory>
#include <string>

#include "system/Handles.h"
#include "toolkit/drawing/BitmapShader.h"
#include "toolkit/drawing/ButtonLayout.h"
#include "toolkit/drawing/IButtonPainter.h"
#include "toolkit/Event.h"
#include "toolkit/Property.h"

namespace lumenor {

class TextElement;

/// What follows the last "\" of `path`, else the last "/"; empty without either. Of a path that ends in "\" it is the
/// text before that separator less its last character: existing caches are named so.
std::wstring FileNameOf(const std::wstring &path);

/// Draws a picture by the button's state, a halo while the mouse is over it, and a label.
class GlowButtonPainter : public IButtonPainter {
public:
  /// `imagePath` names the picture; when it is empty, the picture is the one that the shell has for `programPath`, and
  /// an empty `text` becomes the program's display name. With `insetImage` not 0 the picture fills the button but for a
  /// tenth on every side, instead of the margins of `layout`. Raises CommandNotFoundException when there is neither a
  /// picture nor such a program, HResultError when a picture can't be made.
  GlowButtonPainter(RenderTargetPtr renderTarget, unsigned insetImage, const std::wstring &text,
                    const std::wstring &imagePath, const ButtonLayout &layout, const std::wstring &programPath);

  void Paint(RenderTargetPtr target, const D2D1_RECT_F *rect) override;
  void Attach(Button *newButton) override;
  std::wstring GetLabel() const override { return text; }

  /// Rebuilds the label from the button's size.
  virtual void Layout();

protected:
  std::wstring text;
  std::wstring imagePath;
  std::wstring programPath;
  ButtonLayout layout;
  unsigned insetImage;
  RenderTargetPtr renderTarget;

private:
  using BitmapPtr = Microsoft::WRL::ComPtr<ID2D1Bitmap>;

  void LoadProgramImages();
  void LoadFileImages();
  void LoadVariants(BitmapHandle &source, const std::wstring &cacheBasePath);

  /// A variant from the cache, whose file is made where there is none; where that fails, the variant made anew.
  /// `source` is loaded at first need and shared by the variants. Null where there is no picture.
  BitmapPtr LoadShadedImage(BitmapHandle &source, const std::wstring &cachePath, const IBitmapShader &shader);
  BitmapHandle ShadeSource(BitmapHandle &source, const IBitmapShader &shader);

  D2D1_RECT_F ImageRectangle(const D2D1_RECT_F &rect) const;
  void DrawImage(ID2D1RenderTarget *target, ID2D1Bitmap *image, const D2D1_RECT_F &rect) const;

  BitmapPtr normalImage;
  BitmapPtr hoverImage;
  BitmapPtr glowImage;
  BitmapPtr pressedImage;
  std::shared_ptr<TextElement> normalText;
  std::shared_ptr<TextElement> hoverText;
  ListenerPtr<PropertyChangeEventArgs<long>> sizeListener;
};

} // namespace lumenor
