#include "dock/flyouts/DockGlowButtonPainter.h"

#include <utility>

#include "dock/flyouts/DockButton.h"
#include "dock/flyouts/FlyoutWindow.h"
#include "system/Launch.h"
#include "toolkit/Scale.h"

namespace lumenor {

namespace {

/// The program that an icon is taken from: the first part of the action's command line.
std::wstring ProgramOf(const Element &element) {
  return element.ActionParams.empty() ? std::wstring() : SplitCommandLine(element.ActionParams).program;
}

} // namespace

DockGlowButtonPainter::DockGlowButtonPainter(RenderTargetPtr renderTarget, unsigned insetImage, const Element &element,
                                             const ButtonLayout &layout)
    : GlowButtonPainter(renderTarget, insetImage, element.Head, element.Image, layout, ProgramOf(element)),
      element(element) {
  if (element.ActionType != flyoutAction)
    return;
  arrowDown = std::make_shared<ImageElement>(L"..\\resources\\arrow-down.png", renderTarget);
  arrowUp = std::make_shared<ImageElement>(L"..\\resources\\arrow-up.png", renderTarget);
}

void DockGlowButtonPainter::Attach(Button *newButton) {
  owner = static_cast<DockButton *>(newButton);
  GlowButtonPainter::Attach(newButton);
}

void DockGlowButtonPainter::Layout() {
  GlowButtonPainter::Layout();
  if (!arrowDown)
    return;
  const RECT arrow = {ScaleX(33), ScaleY(64), ScaleX(33) + ScaleX(10), ScaleY(64) + ScaleY(10)};
  arrowDown->SetBounds(&arrow);
  arrowUp->SetBounds(&arrow);
}

void DockGlowButtonPainter::Paint(RenderTargetPtr target, const D2D1_RECT_F *rect) {
  if (!::IsWindowVisible(owner->GetHandle()))
    return;
  GlowButtonPainter::Paint(target, rect);
  const FlyoutWindow *flyout = owner->GetFlyout();
  if (!arrowDown || flyout == nullptr)
    return;
  const bool open = flyout->Visibility.Get() == lumenor::Visibility::Visible;
  owner->PaintChild(target, (open ? arrowUp : arrowDown).get(), rect);
}

} // namespace lumenor
