#pragma once
// The services of the platform that all cycles of the process share. User-interface thread, with COM initialised.

namespace lumenor {

/// Releases them, after the last cycle and before CoUninitialize: the animations first, which may still play, then the
/// imaging factory.
void ReleaseSharedServices();

} // namespace lumenor
