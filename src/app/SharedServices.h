#pragma once
// What all cycles of the process share of the platform's services. The user-interface thread, with COM initialised.

namespace lumenor {

/// Gives it back, after the last cycle and before COM is left: the animations first, which may still play, then the
/// imaging factory.
void ReleaseSharedServices();

} // namespace lumenor
