#include "dock/flyouts/DockGlowButtonPainter.h"

#include "dock/flyouts/DockButton.h"
#include "dock/flyouts/FlyoutWindow.h"
#include "system/Launch.h"
#include "toolkit/Scale.h"

namespace lumenor {

DockGlowButtonPainter::DockGlowButtonPainter(RenderTargetPtr renderTarget, unsigned insetImage, const Element &element,
                                             const ButtonLayout &layout)
    : GlowButtonPainter(renderTarget, insetImage, element.Head, element.Image, layout,
                        SplitCommandLine(element.ActionParams).program) {
  if (element.ActionType != flyoutAction)
    return;
  arrowDown = std::make_shared<ImageElement>(L"..\\resources\\arrow-down.png", renderTarget);
  arrowUp = std::make_shared<ImageElement>(L"..\\resources\\arrow-up.png", renderTarget);
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
  if (!IsButtonVisible())
    return;
  GlowButtonPainter::Paint(target, rect);
  const FlyoutWindow *flyout = static_cast<const DockButton *>(button)->GetFlyout();
  if (!arrowDown || flyout == nullptr)
    return;
  const bool open = flyout->Visibility.Get() == lumenor::Visibility::Visible;
  button->PaintChild(target, (open ? arrowUp : arrowDown).get(), rect);
}

} // namespace lumenor
