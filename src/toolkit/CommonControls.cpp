#include "toolkit/CommonControls.h"

#include "system/Windows.h"

#include <commctrl.h>

namespace lumenor {

void LoadCommonControls() {
  static const BOOL loaded = [] {
    const INITCOMMONCONTROLSEX classes = {sizeof classes, ICC_WIN95_CLASSES | ICC_STANDARD_CLASSES};
    return ::InitCommonControlsEx(&classes);
  }();
  static_cast<void>(loaded);
}

} // namespace lumenor
