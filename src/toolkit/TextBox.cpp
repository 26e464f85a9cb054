#include "toolkit/TextBox.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <optional>
#include <utility>

#include <commctrl.h>

#include "system/HResultError.h"
#include "system/Log.h"
#include "system/ReadableMemory.h"
#include "toolkit/Accessibility.h"
#include "toolkit/CommonControls.h"
#include "toolkit/EditReading.h"
#include "toolkit/EditTextElement.h"
#include "toolkit/Scale.h"
#include "toolkit/StatusFont.h"

namespace lumenor {

namespace {

enum Timer : UINT_PTR {
  BlinkTimer = 5,
};

constexpr float opaque = 1.0F;

// Kept free behind the text, so that a caret there is seen.
constexpr long caretWidth = 1;

/// How far behind the left edge the text begins.
long TextInset() { return ::GetSystemMetrics(SM_CXEDGE) + 1; }

Microsoft::WRL::ComPtr<ID2D1SolidColorBrush> CreateBrush(ID2D1RenderTarget *renderTarget, COLORREF color) {
  constexpr float full = 255.0F;
  const D2D1_COLOR_F brushColor{static_cast<float>(GetRValue(color)) / full,
                                static_cast<float>(GetGValue(color)) / full,
                                static_cast<float>(GetBValue(color)) / full, opaque};
  Microsoft::WRL::ComPtr<ID2D1SolidColorBrush> brush;
  ThrowIfFailed(renderTarget->CreateSolidColorBrush(&brushColor, nullptr, &brush));
  return brush;
}

/// Whether `message` may change what the control shows without a key or the mouse.
bool ChangesLook(UINT message) {
  switch (message) {
  case WM_SETTEXT:
  case WM_CHAR:
  case WM_IME_COMPOSITION:
  case WM_CUT:
  case WM_PASTE:
  case WM_CLEAR:
  case WM_UNDO:
  case EM_UNDO:
  case EM_REPLACESEL:
  case EM_SETSEL:
  case EM_SCROLLCARET:
    return true;
  default:
    return false;
  }
}

/// Whether a request for the dialog code comes with a message that doesn't start a press: the character of a key that
/// is already counted, or a key that is held down and comes again and again.
bool BelongsToFormerPress(LPARAM lParam) {
  constexpr LPARAM wasDown = 1 << 30;
  // A request from another thread brings an address that means nothing here.
  if (lParam == 0 || ::InSendMessage())
    return false;
  const MSG &message = *reinterpret_cast<const MSG *>(lParam);
  return message.message != WM_KEYDOWN || (message.lParam & wasDown) != 0;
}

/// Whether `layOut` succeeds. A text that can't be laid out is missing in the picture, which is better than no picture.
template <typename LayOut> bool IsLaidOut(LayOut &&layOut) {
  const HRESULT result = HResultOf(std::forward<LayOut>(layOut));
  if (FAILED(result))
    LogError("TextBox: can't lay out the text, error %x", static_cast<unsigned>(result));
  return SUCCEEDED(result);
}

} // namespace

TextBox::TextBox(RenderTargetPtr renderTarget, int controlId)
    : renderTarget(std::move(renderTarget)), controlId(controlId),
      highlightBrush(CreateBrush(this->renderTarget.Get(), ::GetSysColor(COLOR_HIGHLIGHT))),
      highlightTextBrush(CreateBrush(this->renderTarget.Get(), ::GetSysColor(COLOR_HIGHLIGHTTEXT))),
      caretBrush(CreateBrush(this->renderTarget.Get(), RGB(255, 255, 255))) {
  subscriptions.Add(this, &TextBox::SendCueBanner, WatermarkText.changed, WatermarkShownOnFocus.changed);
  subscriptions.Add(this, &TextBox::AnnounceName, Name.changed);
}

TextBox::~TextBox() = default;

void TextBox::MakeWindow(HWND parentWindow) {
  const RECT bounds = GetBounds();
  LoadCommonControls();
  Create(parentWindow, &bounds, nullptr, static_cast<UINT_PTR>(controlId));
  SetMargins();
  AnnounceName();
}

/// The window's text is what the user types, so that the name has to be noted beside it. Nobody listens before the
/// first picture is there.
void TextBox::AnnounceName() {
  RunLatestOnceShown([this] {
    if (Name.Get().empty())
      return;
    AnnotateName(handle, Name.Get());
    isAnnotated = true;
  });
}

void TextBox::ApplySystemFont() {
  LOGFONTW description = GetStatusFont();
  description.lfHeight = static_cast<LONG>(-FontSize);
  description.lfWeight = textElement == nullptr ? FW_NORMAL : textElement->FontWeight.Get();
  FontHandle newFont(ThrowIfNull(::CreateFontIndirectW(&description)));
  ::SendMessageW(handle, WM_SETFONT, reinterpret_cast<WPARAM>(newFont.Get()), FALSE);
  font = std::move(newFont); // the former one goes now that the window has let it go
  SetMargins();
  ::SendMessageW(handle, EM_SETLIMITTEXT, static_cast<WPARAM>(MaxLength), 0);
  RequestRepaint();
}

// A control chooses its margins by its font. These are the ones that the elements are made for.
void TextBox::SetMargins() {
  ::SendMessageW(handle, EM_SETMARGINS, EC_LEFTMARGIN | EC_RIGHTMARGIN, MAKELPARAM(TextInset(), caretWidth));
}

BOOL TextBox::ProcessWindowMessage(HWND, UINT message, WPARAM wParam, LPARAM lParam, LRESULT &result, DWORD mapId) {
  if (mapId != 0)
    return FALSE;
  switch (message) {
  case WM_CREATE:
  case WM_PAINT:
    return OnPaint(result);
  case WM_DESTROY:
    return OnDestroy();
  case WM_MOVE:
    return OnMove(lParam);
  case WM_SIZE:
    return OnSize(lParam);
  case WM_LBUTTONDOWN:
  case WM_LBUTTONUP:
  case WM_MOUSEMOVE:
  case WM_KEYUP:
    return RepaintUnhandled();
  case WM_KEYDOWN:
    return OnKeyDown();
  case WM_SETFOCUS:
    return OnSetFocus();
  case WM_KILLFOCUS:
    return OnKillFocus();
  case WM_GETDLGCODE:
    return OnGetDlgCode(wParam, lParam);
  case WM_TIMER:
    return OnTimer(wParam, result);
  case WM_STYLECHANGING:
    return OnStyleChanging(wParam, lParam, result);
  case EM_SETCUEBANNER:
    return OnSetCueBanner(wParam, lParam, result);
  default:
    return ChangesLook(message) ? RepaintUnhandled() : FALSE;
  }
}

// Unhandled, so that the control validates its window; the root paints it.
BOOL TextBox::OnPaint(LRESULT &result) {
  if (needsRepaint != 0)
    Invalidate();
  result = 0;
  return FALSE;
}

BOOL TextBox::OnDestroy() {
  if (std::exchange(isAnnotated, false))
    ClearAnnotations(handle);
  return FALSE;
}

BOOL TextBox::OnSize(LPARAM size) {
  WindowControl::OnSize(size);
  RebuildElements();
  return FALSE;
}

// The control handles the message itself; what it changed shows with the next paint.
BOOL TextBox::RepaintUnhandled() {
  RequestRepaint();
  return FALSE;
}

BOOL TextBox::OnKeyDown() {
  RestartBlink();
  return RepaintUnhandled();
}

BOOL TextBox::OnSetFocus() {
  HasFocus.Set(1);
  return OnKeyDown();
}

BOOL TextBox::OnKillFocus() {
  HasFocus.Set(0);
  ::KillTimer(handle, BlinkTimer);
  caretVisible = 0;
  return RepaintUnhandled();
}

// The dialog asks the field for the code of a key before it handles Return itself. This is the only notice of the key,
// and it counts once for each press.
BOOL TextBox::OnGetDlgCode(WPARAM key, LPARAM message) {
  if (key != VK_RETURN || BelongsToFormerPress(message))
    return FALSE;
  TextBoxEventArgs args{this};
  Accept.Fire(&args);
  return RepaintUnhandled();
}

BOOL TextBox::OnTimer(WPARAM timer, LRESULT &result) {
  if (timer != BlinkTimer)
    return FALSE; // one of the control's own
  caretVisible = caretVisible == 0 ? 1 : 0;
  RequestRepaint();
  result = 0;
  return TRUE;
}

// The control would put a line that is read from the right at the other end of the field than where it is painted.
BOOL TextBox::OnStyleChanging(WPARAM which, LPARAM styles, LRESULT &result) {
  if (static_cast<int>(which) != GWL_EXSTYLE)
    return FALSE;
  reinterpret_cast<STYLESTRUCT *>(styles)->styleNew &= ~static_cast<DWORD>(WS_EX_RTLREADING);
  result = 0;
  return TRUE;
}

// Unhandled, so that the control keeps the text. The listeners of both properties send this message again, with the
// values that are already set; so it ends there. A text out of the property itself is gone once that is set: the
// control has it by the listener's message, and doesn't get this one. Nor does it get an address that no text is at:
// any program of the desktop can send one.
BOOL TextBox::OnSetCueBanner(WPARAM shownOnFocus, LPARAM text, LRESULT &result) {
  const auto *newText = reinterpret_cast<const wchar_t *>(text);
  const std::wstring &former = WatermarkText.Get();
  const std::less_equal<> notBehind;
  const bool isOwn = notBehind(former.data(), newText) && notBehind(newText, former.data() + former.size());
  const std::optional<std::wstring> copy = newText == nullptr ? std::wstring() : CopyReadableText(newText);
  if (!copy) {
    LogError("Message %u with an address that can't be read", EM_SETCUEBANNER);
    result = FALSE;
    return TRUE;
  }
  const bool isGone = isOwn && *copy != former;
  WatermarkShownOnFocus.Set(static_cast<int>(shownOnFocus));
  WatermarkText.Set(*copy);
  RequestRepaint();
  if (isGone)
    result = TRUE;
  return isGone;
}

// The platform takes a null handle for all windows of the desktop.
void TextBox::RequestRepaint() {
  needsRepaint = 1;
  if (handle != nullptr)
    ::InvalidateRect(handle, nullptr, FALSE);
}

// The phase begins anew with the caret on. A user may have chosen a caret that doesn't blink.
void TextBox::RestartBlink() {
  ::KillTimer(handle, BlinkTimer);
  if (const UINT blinkTime = ::GetCaretBlinkTime(); blinkTime != 0 && blinkTime != INFINITE)
    ::SetTimer(handle, BlinkTimer, blinkTime, nullptr);
  caretVisible = 1;
}

void TextBox::SendCueBanner() {
  const std::wstring text = WatermarkText.Get(); // the property may change while the message is under way
  ::SendMessageW(handle, EM_SETCUEBANNER, static_cast<WPARAM>(WatermarkShownOnFocus.Get()),
                 reinterpret_cast<LPARAM>(text.c_str()));
}

void TextBox::RebuildElements() {
  textElement = MakeTextElement();
  SendCueBanner();
  watermarkElement = MakeWatermarkElement();
}

std::shared_ptr<EditTextElement> TextBox::MakeTextElement() const {
  const LONG left = TextInset();
  auto element = std::make_shared<EditTextElement>(renderTarget, highlightBrush, highlightTextBrush);
  element->SetUp({}, {.size = FontSize, .stretch = DWRITE_FONT_STRETCH_ULTRA_CONDENSED, .trimming = 0});
  const RECT bounds{left, 0, left + Width.Get() - ::GetSystemMetrics(SM_CXEDGE), Height.Get()};
  element->SetBounds(&bounds);
  return element;
}

std::shared_ptr<TextElement> TextBox::MakeWatermarkElement() const {
  const LONG edge = ScaleX(::GetSystemMetrics(SM_CXEDGE));
  const LONG left = edge + 3;
  auto element = std::make_shared<TextElement>(renderTarget);
  element->SetUp(WatermarkText.Get(), {.size = FontSize, .slant = DWRITE_FONT_STYLE_ITALIC});
  const RECT bounds{left, 0, left + Width.Get() - edge, Height.Get()};
  element->SetBounds(&bounds);
  return element;
}

void TextBox::Paint(RenderTargetPtr target, const D2D1_RECT_F *rect) {
  if (!::IsWindow(handle) || textElement == nullptr || watermarkElement == nullptr)
    return;
  needsRepaint = 0; // ahead of the painting, which may ask for more
  const bool focused = HasFocus.Get() != 0;
  if (::GetWindowTextLengthW(handle) > 0)
    PaintText(target, *rect);
  else if (!focused || WatermarkShownOnFocus.Get() != 0)
    PaintWatermark(target, *rect);
  if (focused && caretVisible != 0)
    PaintCaret(target.Get(), *rect);
}

void TextBox::PaintText(const RenderTargetPtr &target, const D2D1_RECT_F &rect) {
  EditReading reading = ReadEdit(handle);
  if (HasFocus.Get() == 0)
    reading.selectionEnd = reading.selectionStart; // the control shows it only with the focus
  if (IsLaidOut([&] { textElement->Show(std::move(reading)); }))
    PaintChild(target, textElement.get(), &rect);
}

void TextBox::PaintWatermark(const RenderTargetPtr &target, const D2D1_RECT_F &rect) {
  if (IsLaidOut([&] { watermarkElement->Text.Set(ReadCueBanner()); }))
    PaintChild(target, watermarkElement.get(), &rect);
}

std::wstring TextBox::ReadCueBanner() const {
  std::wstring text(WatermarkText.Get().size() + 1, L'\0');
  if (!::SendMessageW(handle, EM_GETCUEBANNER, reinterpret_cast<WPARAM>(text.data()), static_cast<LPARAM>(text.size())))
    return WatermarkText.Get(); // an older control of the platform has no banners
  text.resize(std::min(text.find(L'\0'), text.size()));
  return text;
}

// One pixel on every display. It keeps within the field when the text ends with it.
void TextBox::PaintCaret(ID2D1RenderTarget *target, const D2D1_RECT_F &rect) const {
  const std::optional<RECT> caret = ReadEditCaret(handle);
  if (!caret)
    return;
  const float left = rect.left + static_cast<float>(caret->left);
  const float top = rect.top + static_cast<float>(caret->top);
  const D2D1_RECT_F line{left, top, left + static_cast<float>(caretWidth),
                         rect.top + static_cast<float>(caret->bottom)};
  target->FillRectangle(&line, caretBrush.Get());
}

} // namespace lumenor
