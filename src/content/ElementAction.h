#pragma once
// Starts what an entry of the dock stands for.

#include <string>

#include "content/Element.h"
#include "system/Launch.h"

namespace lumenor {

/// The main application's name of a pillar; empty for an index without one.
std::wstring PillarName(int index);

/// The main application's arguments that open the pillar whose decimal index is `text`.
std::wstring PillarArguments(const std::wstring &text);

/// The main application's arguments that open the category `text`.
std::wstring CategoryArguments(const std::wstring &text);

/// Starts what `element` names, by its `ActionType`; another type than the four that launch does nothing. A failed
/// start is silent by design.
void RunElementAction(const Element &element);

/// The same for a caller that has split `ActionParams` already.
void RunElementAction(const Element &element, const CommandLine &command);

} // namespace lumenor
