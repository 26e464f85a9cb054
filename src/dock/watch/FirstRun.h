#pragma once
// Whether the welcome screen is due: once per user, and again whenever the registry value asks for it. Stateless; any
// thread; nothing raises.

namespace lumenor {

/// True when the welcome screen is to be shown. It is noted as shown at once, so that it comes once even if it is cut
/// short. False without the dock's registry key.
bool CheckFirstRun();

/// Notes the welcome screen as shown. A failure is ignored.
void ClearFirstRun();

} // namespace lumenor
