// The floor as a process of its own: opens the bare window, paints it once, and waits for messages. Its arguments are
// the icon's path and the window's left, top, right and bottom.

#include <cstdlib>

#include "FloorWindow.h"
#include "system/HResultError.h"

int wmain(int count, wchar_t **arguments) {
  if (count != 6)
    return 2;
  lumenor::ThrowIfFailed(::CoInitialize(nullptr));
  const RECT area = {_wtoi(arguments[2]), _wtoi(arguments[3]), _wtoi(arguments[4]), _wtoi(arguments[5])};
  lumenor::bench::FloorWindow floor(area, arguments[1]);
  ::ShowWindow(floor.Handle(), SW_SHOW);
  floor.Render();
  MSG message = {};
  while (::GetMessageW(&message, nullptr, 0, 0) > 0)
    ::DispatchMessageW(&message);
  return 0;
}
