#pragma once
// The root of an element tree and the only place where pixels reach the screen: a top-level layered window made from a
// dialog template, whose one child is the whole screen. Each repaint renders the tree into an off-screen bitmap and
// hands that, with an alpha for each pixel, to the platform. Owned by whoever opens it. User-interface thread.

#include <functional>
#include <memory>
#include <vector>

#include <d2d1.h>

#include "system/Guard.h"
#include "system/ScopeExit.h"
#include "system/Windows.h"
#include "toolkit/DialogImpl.h"
#include "toolkit/Event.h"
#include "toolkit/Geometry.h"
#include "toolkit/Property.h"
#include "toolkit/SingleChildContainer.h"
#include "toolkit/WindowedElement.h"

namespace lumenor {

/// Messages of the root window itself.
enum WindowMessage : UINT {
  DrawFailedMessage = WM_USER + 10, // 1034: posted to the window when EndDraw failed; wParam is the HRESULT
};

class Window : public CDialogImpl<Window>, public SingleChildContainer {
public:
  /// Makes the render target; no window yet. A failed platform call raises HResultError.
  Window();
  ~Window() override;

  /// Makes the modeless window; see CreateDialogObject. What its elements postpone by RunOnceShown has run when this
  /// returns; a failure of it is one of OnInitDialog, where it belongs but for the time.
  HWND Create(HWND parentWindow);

  /// Paints the whole tree and puts it on the screen, at once; without a window it does nothing. A call during a
  /// Render adds one more pass after it. Raises HResultError, but not for a failed EndDraw: that
  /// posts DrawFailedMessage.
  void Render();

  /// Puts the window on the screen at its bounds, with the focus, when Visibility says visible.
  void Show();

  /// Holds all repaints of `window` back while it lives. They aren't made up for: the holder repaints
  /// afterwards.
  struct RepaintHold : ScopedValue<int> {
    explicit RepaintHold(Window &window) : ScopedValue(window.repaintHolds, window.repaintHolds + 1) {}
  };

  /// While one lives, the drawing factory outlasts its windows, and those that come later use it.
  struct FactoryHold {
    FactoryHold() { ++factoryHolds; }
    ~FactoryHold() {
      if (--factoryHolds == 0)
        ForgetFactory();
    }
    FactoryHold(const FactoryHold &) = delete;
    FactoryHold &operator=(const FactoryHold &) = delete;
  };

  /// Lets the factory go with the windows that use it, since something of it has failed. The next window makes a new
  /// one.
  static void ForgetFactory() { heldFactory.Reset(); }

  /// The number of the template that Create and DoModal take, set by the constructor of each subclass.
  WORD dialogId = 0;

  void Paint(RenderTargetPtr target, const D2D1_RECT_F *rect) override;
  HWND GetHandle() override { return handle; }
  void Invalidate() override;
  void RunOnceShown(std::function<void()> work) override;

  BOOL ProcessWindowMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam, LRESULT &result,
                            DWORD mapId = 0) override;

  /// Called once while the window is being made; each screen composes its tree here.
  virtual void InitializeComponent() {}

protected:
  using EndSessionHandler = void (Window::*)();

  /// On WM_DESTROY, and on WM_CLOSE ahead of the destruction: nothing here.
  virtual void OnDestroy() {}
  virtual void OnClose() {}

  /// Puts the window where Left, Top, Width and Height say, in screen pixels.
  virtual void MoveToBounds();

  virtual void OnLeftChanged() { MoveElementWindow(*this); }
  virtual void OnTopChanged() { MoveElementWindow(*this); }
  virtual void OnVisibilityChanged(PropertyChangeEventArgs<lumenor::Visibility> *args);
  virtual void OnOpacityChanged() { Render(); }

  /// Runs `handler`, which answers a message, and returns whether it has done so. When it fails, the failure is
  /// reported under `name`, the window is destroyed, and the message counts as not handled.
  template <typename Handler> BOOL Answer(const wchar_t *name, Handler handler) {
    BOOL handled = FALSE;
    if (Guarded(name, [&] { handled = handler(); }))
      return handled;
    DestroyAfterFailure();
    return FALSE;
  }

  /// The same for a handler that leaves nothing to others: the message's result is `answer` once it has run.
  template <typename Handler> BOOL Answer(const wchar_t *name, LRESULT &result, LRESULT answer, Handler handler) {
    return Answer(name, [&] {
      handler();
      result = answer;
      return TRUE;
    });
  }

  /// Called at the end of a session when set.
  EndSessionHandler endSessionHandler = nullptr;

  /// Borrowed by every element and painter of the tree.
  Microsoft::WRL::ComPtr<ID2D1DCRenderTarget> renderTarget;

private:
  BOOL OnMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT &result);
  void OnInitDialog();
  BOOL OnShowWindow(bool isShown);
  BOOL OnWindowPosChanged(WINDOWPOS position);
  void OnEndSession();

  /// All windows that exist, in the order in which they were made.
  static inline std::vector<Window *> allWindows;

  static inline int factoryHolds = 0;
  static inline Microsoft::WRL::ComPtr<ID2D1Factory> heldFactory; // null without a hold

  static Microsoft::WRL::ComPtr<ID2D1DCRenderTarget> CreateTarget();
  void DestroyAfterFailure();
  void RunPostponed();
  void RemoveFrame();
  void MakeLayered();
  void RenderOnce();
  void Draw(HDC target, const RECT &area);

  /// What waits for the first picture; none unless this window is being made and comes up visible.
  std::vector<std::function<void()>> postponed;
  bool postpones = false;
  bool isComposed = false;

  int paintPending = 0;
  bool rendering = false;
  int repaintHolds = 0;
};

} // namespace lumenor
