#pragma once
// What screen readers are told of a control beside what the platform's own proxies find out by its window. Proxies take
// the name of a button from the text of its window, which the button answers itself (Button); only what no window can
// answer is noted here, with the platform's annotations. User-interface thread, in an apartment of COM.
//
// A failure costs a line in the log: the control works without.

#include <string>

#include "system/Windows.h"

namespace lumenor {

/// Makes `name` the name of `control`, whose window text is something else.
void AnnotateName(HWND control, const std::wstring &name);

/// Makes `role`, one of ROLE_SYSTEM_..., the role of `control`, whose window class is another's.
void AnnotateRole(HWND control, LONG role);

/// Drops what was noted of `control`, which is being destroyed: the platform keeps it otherwise.
void ClearAnnotations(HWND control);

/// Tells screen readers that `event`, one of EVENT_OBJECT_..., has happened to `control`; nothing without a window.
void NotifyAccessibility(DWORD event, HWND control);

/// `text` as the text of a button's window, where a single "&" marks the access key and isn't a part of the name.
std::wstring WithoutAccessKey(const std::wstring &text);

} // namespace lumenor
