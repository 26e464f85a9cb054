#pragma once
// The platform's common controls, whose window classes have to be registered. User-interface thread.

namespace lumenor {

/// Registers the classes of tool tips and of the standard controls, at the first call only. To be called before the
/// first such window is made. A failure isn't reported: the window's creation then fails if the class is missing.
void LoadCommonControls();

} // namespace lumenor
