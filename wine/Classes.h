#pragma once
// The classes that the DLL serves. Any thread.

#include "system/Windows.h"

namespace lumenor::services {

/// Makes an object of a class and hands out the interface that is asked for.
using Creator = HRESULT (*)(REFIID id, void **object);

/// The creator of the class; null when the DLL doesn't serve it.
Creator FindClass(REFCLSID id);

} // namespace lumenor::services
