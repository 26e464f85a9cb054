#include "toolkit/drawing/IButtonPainter.h"

#include "toolkit/drawing/Button.h"

namespace lumenor {

bool IButtonPainter::IsButtonVisible() const { return button != nullptr && ::IsWindowVisible(button->GetHandle()); }

} // namespace lumenor
