#pragma once
// What a file that is dropped on the bar becomes. Stateless; user-interface thread.

#include <string>

#include "content/Element.h"

namespace lumenor {

/// The element of a button that opens the file or folder at `path`: labelled with its localized name, or else with its
/// file name without the extension.
Element MakeDroppedElement(const std::wstring &path);

} // namespace lumenor
