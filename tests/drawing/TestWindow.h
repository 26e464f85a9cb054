#pragma once
// A root window of the tests' own, with a canvas as its child, and what its repaints are told by.

#include <functional>
#include <memory>
#include <vector>

#include "resources/resource.h"
#include "toolkit/Canvas.h"
#include "toolkit/drawing/IButtonPainter.h"
#include "toolkit/drawing/Window.h"

namespace lumenor {

/// A painter that fills its rectangle with one colour and remembers how it was called.
class RecordingPainter : public IButtonPainter {
public:
  void Paint(RenderTargetPtr renderTarget, const D2D1_RECT_F *rect) override;
  void Attach(Button *newButton) override;

  int paints = 0;
  int attaches = 0;
  D2D1_RECT_F lastRect{};
  std::function<void()> onAttach;
};

/// The window, 200 by 80 pixels at (120, 140) unless changed, with `canvas` as its child.
class TestWindow : public Window {
public:
  TestWindow();
  ~TestWindow() override;

  void InitializeComponent() override;
  void OnDestroy() override;
  void OnClose() override;
  void Paint(RenderTargetPtr target, const D2D1_RECT_F *rect) override;

  ID2D1RenderTarget *Target() const { return renderTarget.Get(); }
  void EndSession();
  void ListenToEndSession() { endSessionHandler = static_cast<EndSessionHandler>(&TestWindow::EndSession); }

  Canvas canvas;
  int paints = 0; // passes over the tree
  int sessionsEnded = 0;
  std::function<void()> onInitialize, onDestroy, onClose, onEndSession;
  std::function<void(ID2D1RenderTarget *target)> onPaint; // before the children
};

/// How often the process called UpdateLayeredWindow, and what with, while this lives; the calls still go through.
class LayerSpy {
public:
  LayerSpy();
  ~LayerSpy();
  LayerSpy(const LayerSpy &) = delete;
  LayerSpy &operator=(const LayerSpy &) = delete;

  struct Call {
    POINT position;
    SIZE size;
    POINT origin;
    COLORREF key;
    BLENDFUNCTION blend;
    DWORD flags;
  };
  static const std::vector<Call> &Calls();
};

} // namespace lumenor
