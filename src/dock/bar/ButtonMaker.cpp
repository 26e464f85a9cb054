#include "dock/bar/ButtonMaker.h"

#include <utility>

#include "dock/bar/BarButtons.h"
#include "dock/flyouts/DockGlowButtonPainter.h"
#include "dock/flyouts/PainterPicture.h"
#include "dock/TextIds.h"
#include "system/LanguageResources.h"
#include "toolkit/drawing/GlowButtonPainter.h"
#include "toolkit/drawing/SelectableDelegateButtonPainter.h"

namespace lumenor {

namespace {

constexpr char logSubject[] = "MainDlg";

} // namespace

ButtonMaker::ButtonMaker(RenderTargetPtr renderTarget, EventListener<ButtonEventArgs> *clickListener,
                         EventListener<PropertyChangeEventArgs<lumenor::Visibility>> *flyoutListener)
    : renderTarget(std::move(renderTarget)), clickListener(clickListener), flyoutListener(flyoutListener) {}

/// One bad picture would keep the whole bar from coming up, at this start and at all that follow.
std::shared_ptr<IButtonPainter> ButtonMaker::MakePainter(const Element &element, const ButtonLayout &layout) const {
  return MakeWithPicture(logSubject, element.Image, [&](const std::wstring &image) {
    Element shown = element;
    shown.Image = image;
    return std::make_shared<DockGlowButtonPainter>(renderTarget, 0, shown, layout);
  });
}

std::shared_ptr<DockButton> ButtonMaker::MakeButton(const Element &element, const ButtonLayout &layout) const {
  auto button = std::make_shared<DockButton>(MakePainter(element, layout), element, flyoutListener);
  button->Click.AddListener(clickListener);
  return button;
}

std::shared_ptr<CheckedButton> ButtonMaker::MakeDockPositionButton() const {
  const auto makePainter = [this](const wchar_t *picture) {
    return MakeWithPicture(logSubject, picture, [this](const std::wstring &image) {
      return std::make_shared<GlowButtonPainter>(renderTarget, 0, L"", image, MakeSystemButtonLayout(), L"");
    });
  };
  auto button = std::make_shared<CheckedButton>(std::make_shared<SelectableDelegateButtonPainter>(
      makePainter(L"..\\resources\\move_to_top.png"), makePainter(L"..\\resources\\move_to_bottom.png")));
  button->Checked.Set(1);
  button->Name.Set(LoadDockString(dockAtTopTextId));
  return button;
}

} // namespace lumenor
