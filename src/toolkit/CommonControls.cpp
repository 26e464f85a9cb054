#include "toolkit/CommonControls.h"

#include "system/Windows.h"

#include <commctrl.h>

namespace lumenor {

void LoadCommonControls() {
  const INITCOMMONCONTROLSEX classes = {sizeof classes, ICC_WIN95_CLASSES | ICC_STANDARD_CLASSES};
  [[maybe_unused]] static const BOOL loaded = ::InitCommonControlsEx(&classes);
}

} // namespace lumenor
