#pragma once
// Prepares on a thread of its own what a bar needs later in its start.

#include "system/Handles.h"
#include "system/Windows.h"

#include <dwrite.h>
#include <wrl/client.h>

namespace lumenor {

/// Loads the fonts and the XML parser while the first render target is made, which keeps one processor busy for half of
/// a start. Raises nothing and reports nothing: what fails here fails again where it is needed.
class WarmUp {
public:
  /// Starts the thread. Without one the start takes longer.
  WarmUp() noexcept;

  /// Waits for the thread.
  ~WarmUp();
  WarmUp(const WarmUp &) = delete;
  WarmUp &operator=(const WarmUp &) = delete;

private:
  static DWORD WINAPI Run(void *self);

  Microsoft::WRL::ComPtr<IDWriteTextLayout> layout; // keeps the fonts
  KernelHandle thread;
};

} // namespace lumenor
