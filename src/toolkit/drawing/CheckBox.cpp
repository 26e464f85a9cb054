#include "toolkit/drawing/CheckBox.h"

#include <utility>

#include <oleacc.h>

#include "toolkit/Accessibility.h"

namespace lumenor {

CheckBox::CheckBox(std::shared_ptr<IButtonPainter> painter) : CheckedButton(std::move(painter)) {
  subscriptions.Add(this, &CheckBox::OnCheckedChanged, Checked.changed);
}

BOOL CheckBox::ProcessWindowMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam, LRESULT &result,
                                    DWORD mapId) {
  if (mapId != 0 || (message != BM_GETCHECK && message != BM_GETSTATE))
    return CheckedButton::ProcessWindowMessage(window, message, wParam, lParam, result, mapId);
  result = Checked.Get() != 0 ? BST_CHECKED : BST_UNCHECKED;
  if (message == BM_GETSTATE)
    result |= (IsPressed.Get() != 0 ? BST_PUSHED : 0) | (HasFocus.Get() != 0 ? BST_FOCUS : 0);
  return TRUE;
}

void CheckBox::OnCreate() {
  CheckedButton::OnCreate();
  AnnotateRole(handle, ROLE_SYSTEM_CHECKBUTTON);
}

void CheckBox::OnDestroy() { ClearAnnotations(handle); }

void CheckBox::OnCheckedChanged() { NotifyAccessibility(EVENT_OBJECT_STATECHANGE, handle); }

} // namespace lumenor
