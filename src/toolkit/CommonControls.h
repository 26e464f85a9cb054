#pragma once
// The platform's common controls, whose classes aren't there until they are asked for. User-interface thread.

namespace lumenor {

/// Has the platform register the classes of tool tips and of the plain controls; once per process, however often it is
/// called. Before the first such window. A platform that refuses has them all the same or fails the window's making.
void LoadCommonControls();

} // namespace lumenor
