#pragma once
// The look of the bar's buttons: a picture with a hover, a glow and a pressed variant, and a label. The variants are
// shaded once per picture and machine, into the image cache. The first picture of a window shows none of them, so they
// are loaded after it. User-interface thread only.

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
class GlowButtonPainter : public IButtonPainter, public std::enable_shared_from_this<GlowButtonPainter> {
public:
  /// `imagePath` names the picture; when it is empty, the picture is the one that the shell has for `programPath`, and
  /// an empty `text` becomes the program's display name. With `insetImage` not 0 the picture fills the button but for a
  /// tenth on every side, instead of the margins of `layout`. Raises CommandNotFoundException when there is neither a
  /// picture nor such a program, HResultError when the picture can't be made.
  GlowButtonPainter(RenderTargetPtr renderTarget, unsigned insetImage, const std::wstring &text,
                    const std::wstring &imagePath, const ButtonLayout &layout, const std::wstring &programPath);

  void Paint(RenderTargetPtr target, const D2D1_RECT_F *rect) override;

  /// Also loads the variants, once the first picture of the button's window is on the screen.
  void Attach(Button *newButton) override;
  void Detach() override;

  std::wstring GetLabel() const override { return text; }

  /// Loads the variants, the first time that it is called. The picture stands in for one that can't be made, which is
  /// logged.
  void LoadVariants();

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

  void LoadProgramImage();
  void LoadFileImage();

  /// LoadShadedImage; null where it raises HResultError, which is logged.
  BitmapPtr LoadVariant(const std::wstring &cachePath, const IBitmapShader &shader);

  /// A variant from the cache, whose file is made where there is none; where that fails, the variant made anew. Null
  /// where there is no picture.
  BitmapPtr LoadShadedImage(const std::wstring &cachePath, const IBitmapShader &shader);
  BitmapHandle ShadeSource(const IBitmapShader &shader);

  D2D1_RECT_F ImageRectangle(const D2D1_RECT_F &rect) const;
  void DrawImage(ID2D1RenderTarget *target, ID2D1Bitmap *image, const D2D1_RECT_F &rect) const;

  BitmapHandle source; // what the variants are made of, loaded at first need
  bool areVariantsLoaded = false;
  BitmapPtr normalImage;
  BitmapPtr hoverImage;
  BitmapPtr glowImage;
  BitmapPtr pressedImage;
  std::shared_ptr<TextElement> normalText;
  std::shared_ptr<TextElement> hoverText;
  ListenerPtr<PropertyChangeEventArgs<long>> sizeListener;
};

} // namespace lumenor
