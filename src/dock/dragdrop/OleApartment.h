#pragma once
// OLE on the thread of the user interface, which drag and drop needs. Entered and left with the dock.

#include "system/Windows.h"

namespace lumenor {

class OleApartment {
public:
  OleApartment() { ::OleInitialize(nullptr); }
  ~OleApartment() { ::OleUninitialize(); }
  OleApartment(const OleApartment &) = delete;
  OleApartment &operator=(const OleApartment &) = delete;
};

} // namespace lumenor
