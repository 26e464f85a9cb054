#pragma once
// A panel whose children stay where their owner puts them. User-interface thread.

#include "toolkit/PanelWindow.h"

namespace lumenor {

class Canvas : public PanelWindow<Canvas> {};

} // namespace lumenor
