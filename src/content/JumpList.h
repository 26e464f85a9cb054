#pragma once
// The jump list that the shell shows for the dock's icon on the task bar: the entries of its flyout and the user's
// buttons as links. It is published whole at the start of each cycle and stays when the dock has ended. Needs a thread
// that has initialised COM, and a process with `applicationUserModelId`. Failures are returned, not raised.

#include "content/Element.h"
#include "system/Windows.h"

struct ICustomDestinationList;

namespace lumenor {

/// The ID of the process and its jump list for the shell.
inline constexpr wchar_t applicationUserModelId[] = L"com.tw.ebu.lumenor";

/// Publishes the tasks of the last flyout that `mainElements` name and of the user's document, which it loads itself;
/// `jumpListElements` have the pictures. After a failure the former list stays published.
HRESULT CreateJumpList(const ElementList &mainElements, const ElementList &jumpListElements);

/// Adds a link for each of `tasks` whose target is a file, in their order. The last entry of `jumpListElements` with
/// the same position has the task's picture. A task that can't be linked is logged and left out; without any left
/// nothing is added.
HRESULT AddJumpListTasks(ICustomDestinationList *destinationList, const ElementList &tasks,
                         const ElementList &jumpListElements);

} // namespace lumenor
