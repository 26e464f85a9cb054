#pragma once
// Joins the thread to COM for as long as it lives, as the entry function does.

#include "system/Windows.h"

namespace lumenor::tests {

class ComApartment {
public:
  ComApartment() { ::CoInitialize(nullptr); }
  ~ComApartment() { ::CoUninitialize(); }
  ComApartment(const ComApartment &) = delete;
  ComApartment &operator=(const ComApartment &) = delete;
};

} // namespace lumenor::tests
