#pragma once
// What the bar's buttons are made from: the layouts of their painters, and the elements of the dock's own command
// buttons, which no document holds. User-interface thread.

#include <string>

#include "content/Element.h"
#include "toolkit/drawing/ButtonLayout.h"

namespace lumenor {

/// The layout of fixed and user buttons, in device pixels like all of these.
ButtonLayout MakeBarButtonLayout();

/// The layout of the For You button.
ButtonLayout MakeForYouLayout();

/// The layout of the search provider arrow and the search button.
ButtonLayout MakeSearchButtonLayout();

/// The layout of the reset, position and close buttons.
ButtonLayout MakeSystemButtonLayout();

/// The title of the For You flyout; empty when there is no such text.
std::wstring LoadForYouTitle();

/// The element of the For You button, with the picture of new items when `active`.
Element MakeForYouElement(bool active);

/// The elements of the other command buttons.
Element MakeSearchProviderElement();
Element MakeSearchElement();
Element MakeResetElement();
Element MakeCloseElement();

} // namespace lumenor
