#pragma once
// The field that takes typed text: at once a control of the tree and a real child window of the platform's edit class,
// which does all of the editing. The window shows nothing of its own: what it would show is read from it and painted in
// the root's one pass. Name is what screen readers call the field. Held in a shared pointer by whoever composes the
// screen. User-interface thread.

#include <memory>
#include <string>

#include "system/Handles.h"
#include "system/Windows.h"
#include "toolkit/Event.h"
#include "toolkit/Property.h"
#include "toolkit/WindowedElement.h"

namespace lumenor {

class EditTextElement;
class TextBox;
class TextElement;

/// The arguments of a text box's event; on the stack of the code that fires it.
struct TextBoxEventArgs {
  TextBox *sender = nullptr;
};

class TextBox : public WindowedElement<TextBox, WindowControl,
                                       CWinTraits<WS_CHILD | WS_VISIBLE | WS_TABSTOP | ES_AUTOHSCROLL, 0>> {
public:
  /// `controlId` is the id that the window is made with. Makes the brushes, but no window; that comes with OnAttached.
  /// Raises HResultError.
  TextBox(RenderTargetPtr renderTarget, int controlId);
  ~TextBox() override;

  /// The platform's class that the window is built upon.
  static const wchar_t *GetSuperClassName() { return L"EDIT"; }

  /// What the empty field shows. Set as the window's cue banner, and changed by a banner that others set there.
  Property<std::wstring> WatermarkText;

  /// Not 0: the empty field shows the watermark also while it has the focus.
  Property<int> WatermarkShownOnFocus{0};

  /// Of the text, the watermark and the window's own font, in pixels. Set it ahead of OnAttached and ApplySystemFont.
  float FontSize = 10.0F;

  /// How many characters a user can enter; goes to the window with ApplySystemFont. 0 means as many as the platform
  /// takes.
  int MaxLength = 0;

  /// Fired when Return is pressed in the field. An exception out of a listener goes on to whoever dispatches the
  /// window's messages.
  Event<TextBoxEventArgs> Accept{L"Accept"};

  /// Gives the window the system's status font in FontSize, then MaxLength. To be called once the window is there.
  /// Raises HResultError when there is no such font.
  void ApplySystemFont();

  void Paint(RenderTargetPtr renderTarget, const D2D1_RECT_F *rect) override;

  BOOL ProcessWindowMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam, LRESULT &result,
                            DWORD mapId = 0) override;

protected:
  /// 1 while the tree must repaint the field.
  int needsRepaint = 0;

  /// Made anew at every change of the size.
  std::shared_ptr<EditTextElement> textElement;
  std::shared_ptr<TextElement> watermarkElement;

  /// The caret's phase: 1 while it is shown.
  int caretVisible = 0;

  void MakeWindow(HWND parentWindow) override;
  BOOL OnSize(LPARAM size) override;

private:
  BOOL OnPaint(LRESULT &result);
  BOOL OnDestroy();
  BOOL RepaintUnhandled();
  BOOL OnKeyDown();
  BOOL OnSetFocus();
  BOOL OnKillFocus();
  BOOL OnGetDlgCode(WPARAM key, LPARAM message);
  BOOL OnTimer(WPARAM timer, LRESULT &result);
  BOOL OnStyleChanging(WPARAM which, LPARAM styles, LRESULT &result);
  BOOL OnSetCueBanner(WPARAM shownOnFocus, LPARAM text, LRESULT &result);

  void AnnounceName();
  void RequestRepaint();
  void RestartBlink();
  void SendCueBanner();
  void SetMargins();
  void RebuildElements();
  std::shared_ptr<EditTextElement> MakeTextElement() const;
  std::shared_ptr<TextElement> MakeWatermarkElement() const;
  void PaintText(const RenderTargetPtr &target, const D2D1_RECT_F &rect);
  void PaintWatermark(const RenderTargetPtr &target, const D2D1_RECT_F &rect);
  void PaintCaret(ID2D1RenderTarget *target, const D2D1_RECT_F &rect) const;
  std::wstring ReadCueBanner() const;
  RenderTargetPtr renderTarget;
  int controlId;
  FontHandle font;
  bool isAnnotated = false;
  Microsoft::WRL::ComPtr<ID2D1SolidColorBrush> highlightBrush, highlightTextBrush, caretBrush;
};

} // namespace lumenor
