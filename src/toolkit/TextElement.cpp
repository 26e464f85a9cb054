#include "toolkit/TextElement.h"

#include <cmath>

#include "system/HResultError.h"
#include "system/Log.h"
#include "system/Text.h"
#include "toolkit/StatusFont.h"

namespace lumenor {

namespace {

constexpr float unbounded = 2147483648.0F;

/// Whether the locale of the text formats is read from right to left.
bool ReadsRightToLeft() {
  const int length = ::GetLocaleInfoEx(textLocaleName, LOCALE_IREADINGLAYOUT, nullptr, 0);
  if (length <= 0)
    return false;
  std::wstring layout(static_cast<std::size_t>(length), L'\0');
  ::GetLocaleInfoEx(textLocaleName, LOCALE_IREADINGLAYOUT, layout.data(), length);
  return layout[0] == L'1';
}

/// What is laid out and drawn of a text: more than any screen holds. Time and memory of a layout grow with the text,
/// and some platforms' layouts end the program at some ten thousand characters.
std::wstring_view Shown(const std::wstring &text) { return Beginning(text, 8192); }

UINT32 Length(std::wstring_view text) { return static_cast<UINT32>(text.size()); }

} // namespace

TextElement::TextElement(RenderTargetPtr renderTarget) : renderTarget(std::move(renderTarget)) {
  CreateFormat();
  subscriptions.Add(this, &TextElement::Measure, Text.changed);
  // WordWrapping isn't among them: a change waits for the next Update.
  subscriptions.Add(this, &TextElement::Update, Color.changed, TextAlignment.changed, FontSize.changed,
                    FontWeight.changed, FontStyle.changed, FontStretch.changed, Trimming.changed);
}

void TextElement::SetUp(const std::wstring &text, const TextStyle &style) {
  BeginUpdate();
  Text.Set(text);
  FontSize.Set(style.size);
  FontWeight.Set(style.weight);
  FontStyle.Set(style.slant);
  FontStretch.Set(style.stretch);
  Color.Set(style.color);
  TextAlignment.Set(style.alignment);
  WordWrapping.Set(style.wrapping);
  Trimming.Set(style.trimming);
  EndUpdate();
}

void TextElement::Update() {
  if (IsUpdating())
    return;
  CreateFormat();
  const lumenor::Color &color = Color.Get();
  const D2D1_COLOR_F brushColor{color.red, color.green, color.blue, color.alpha};
  brush.Reset();
  ThrowIfFailed(renderTarget->CreateSolidColorBrush(&brushColor, nullptr, &brush));
  Measure();
}

void TextElement::CreateFormat() {
  const auto factory = CreateTextFactory();
  const auto format =
      CreateStatusTextFormat(factory.Get(), FontWeight.Get(), FontStyle.Get(), FontStretch.Get(), FontSize.Get());
  ThrowIfFailed(format->SetTextAlignment(TextAlignment.Get()));
  ThrowIfFailed(format->SetWordWrapping(static_cast<DWRITE_WORD_WRAPPING>(WordWrapping.Get())));
  if (ReadsRightToLeft())
    ThrowIfFailed(format->SetReadingDirection(DWRITE_READING_DIRECTION_RIGHT_TO_LEFT));
  ApplyTrimming(factory.Get(), format.Get());
  textFormat = format;
}

void TextElement::ApplyTrimming(IDWriteFactory *factory, IDWriteTextFormat *format) {
  Microsoft::WRL::ComPtr<IDWriteInlineObject> sign;
  DWRITE_TRIMMING trimming{DWRITE_TRIMMING_GRANULARITY_NONE, 0, 0};
  if (Trimming.Get() != 0) {
    ThrowIfFailed(factory->CreateEllipsisTrimmingSign(format, &sign));
    trimming.granularity = DWRITE_TRIMMING_GRANULARITY_CHARACTER;
  }
  ThrowIfFailed(format->SetTrimming(&trimming, sign.Get()));
}

Microsoft::WRL::ComPtr<IDWriteTextLayout> TextElement::CreateLayout(const std::wstring &text) const {
  Microsoft::WRL::ComPtr<IDWriteTextLayout> layout;
  const std::wstring_view shown = Shown(text);
  ThrowIfFailed(CreateTextFactory()->CreateTextLayout(shown.data(), Length(shown), textFormat.Get(), unbounded,
                                                      unbounded, &layout));
  return layout;
}

void TextElement::Measure() {
  paintedLayout.Reset();
  const auto unboundedLayout = CreateLayout(Text.Get());
  DWRITE_TEXT_METRICS metrics{};
  ThrowIfFailed(unboundedLayout->GetMetrics(&metrics));
  DesiredWidth.Set(static_cast<long>(std::ceil(metrics.width)));
  DesiredHeight.Set(static_cast<long>(std::ceil(metrics.height)));
  Invalidate();
}

void TextElement::Paint(RenderTargetPtr, const D2D1_RECT_F *rect) {
  const D2D1_SIZE_F room{rect->right - rect->left, rect->bottom - rect->top};
  const bool isInverted = room.width < 0 || room.height < 0;
  if (brush != nullptr && !isInverted && LayOut(room))
    renderTarget->DrawTextLayout({rect->left, rect->top}, paintedLayout.Get(), brush.Get(),
                                 D2D1_DRAW_TEXT_OPTIONS_NONE);
}

/// A text that can't be laid out is missing in the picture, which is better than no picture.
bool TextElement::LayOut(const D2D1_SIZE_F &room) {
  const HRESULT result = HResultOf([&] {
    if (paintedLayout == nullptr)
      paintedLayout = CreateLayout(Text.Get());
    ThrowIfFailed(paintedLayout->SetMaxWidth(room.width));
    ThrowIfFailed(paintedLayout->SetMaxHeight(room.height));
  });
  if (FAILED(result))
    LogError("TextElement: can't lay out the text, error %x", static_cast<unsigned>(result));
  return SUCCEEDED(result);
}

} // namespace lumenor
