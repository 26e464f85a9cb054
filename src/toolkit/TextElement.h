#pragma once
// One run of text in the family of the system's status font; publishes its measured size as the desired one. No window.
// User-interface thread.

#include <string>

#include "system/Windows.h"

#include <dwrite.h>

#include "toolkit/UIElement.h"

namespace lumenor {

/// How a text looks, as TextElement::SetUp takes it; the values are those of the properties there.
struct TextStyle {
  float size;
  DWRITE_FONT_WEIGHT weight = DWRITE_FONT_WEIGHT_NORMAL;
  Color color{1, 1, 1, 1};
  DWRITE_TEXT_ALIGNMENT alignment = DWRITE_TEXT_ALIGNMENT_LEADING;
  DWRITE_FONT_STYLE slant = DWRITE_FONT_STYLE_NORMAL;
  DWRITE_FONT_STRETCH stretch = DWRITE_FONT_STRETCH_NORMAL;
  int wrapping = DWRITE_WORD_WRAPPING_NO_WRAP;
  int trimming = 1;
};

class TextElement : public UIElement {
public:
  /// Makes the text format; raises HResultError when that fails. It has no brush before the first Update;
  /// SetUp makes that.
  explicit TextElement(RenderTargetPtr renderTarget);

  Property<std::wstring> Text;
  Property<lumenor::Color> Color{lumenor::Color{1, 1, 1, 1}};
  Property<DWRITE_TEXT_ALIGNMENT> TextAlignment{DWRITE_TEXT_ALIGNMENT_LEADING};

  /// In device-independent units.
  Property<float> FontSize{10.0F};
  Property<DWRITE_FONT_WEIGHT> FontWeight{DWRITE_FONT_WEIGHT_NORMAL};
  Property<DWRITE_FONT_STYLE> FontStyle{DWRITE_FONT_STYLE_NORMAL};
  Property<DWRITE_FONT_STRETCH> FontStretch{DWRITE_FONT_STRETCH_NORMAL};

  /// A DWRITE_WORD_WRAPPING. A change shows at the next Update that something else causes.
  Property<int> WordWrapping{DWRITE_WORD_WRAPPING_NO_WRAP};

  /// Not 0: text that is too long is cut with an ellipsis.
  Property<int> Trimming{1};

  /// Sets text and look in one group of changes. Raises HResultError.
  void SetUp(const std::wstring &text, const TextStyle &style);

  /// Makes format and brush anew and measures; nothing inside a group of changes. Raises HResultError.
  void Update() override;

  /// Draws the text into `rect`, vertically centred, on the render target given at construction.
  void Paint(RenderTargetPtr renderTarget, const D2D1_RECT_F *rect) override;

protected:
  /// Lays `text` out in the text format, in a space without bounds. Raises HResultError.
  Microsoft::WRL::ComPtr<IDWriteTextLayout> CreateLayout(const std::wstring &text) const;

  RenderTargetPtr renderTarget;

  /// Replaced at every Update; the brush is null before the first.
  Microsoft::WRL::ComPtr<IDWriteTextFormat> textFormat;
  Microsoft::WRL::ComPtr<ID2D1SolidColorBrush> brush;

private:
  void Measure();
  void CreateFormat();
  void ApplyTrimming(IDWriteFactory *factory, IDWriteTextFormat *format);

  /// Fits `paintedLayout` to `room`; false, with a log line, where that fails.
  bool LayOut(const D2D1_SIZE_F &room);

  /// What Paint draws: laying a text out costs more than drawing it. Made by the first Paint after a change.
  Microsoft::WRL::ComPtr<IDWriteTextLayout> paintedLayout;
};

} // namespace lumenor
