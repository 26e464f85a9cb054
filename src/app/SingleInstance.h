#pragma once
// Keeps the dock to one instance per machine: a named event that every user can open says that a dock runs, and a
// broadcast message brings that dock to the front. Owned by the entry function for the life of the process.

#include "system/Handles.h"
#include "system/Windows.h"

namespace lumenor {

/// The name of the event that a running dock holds.
inline constexpr wchar_t instanceGuardEventName[] = L"Global\\tw-8362960b-ef13-487f-b61f-00feed603674";

/// The name of the message that a second start broadcasts.
inline constexpr wchar_t dockActivateMessageName[] = L"TWDOCK_11D3CB1E-8DE1-4105-9277-8BF483A1E841";

/// Whether a process "LumenorPanel.exe" runs, in any case of its letters; false when the processes can't be listed. The
/// installed dock has another name on purpose, so on an ordinary installation this is false.
bool IsDockProcessRunning();

class SingleInstance {
public:
  /// True when this process is the one dock for the life of this object; also when the event can't be made, since a
  /// dock without that protection is better than none. False when another dock runs, which has been sent
  /// `activateMessage` to bring it to the front, unless the two started at the same moment.
  bool Join(UINT activateMessage);

private:
  KernelHandle instanceGuardEvent;
};

} // namespace lumenor
