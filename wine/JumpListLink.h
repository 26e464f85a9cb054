#pragma once
// What a jump list keeps of a shell link. Stateless; any thread.

#include "JumpListFile.h"

#include <shobjidl.h>

namespace lumenor::services {

/// Whether the link is no link but a line between others.
bool IsSeparator(IShellLinkW &link);

/// Makes `block`, of that kind, what the link tells. E_INVALIDARG for a link without a title, which nobody could show,
/// or without a path: one that has nothing but an item list isn't served. Arguments, which each link has to declare,
/// may be declared as none.
HRESULT DescribeLink(IShellLinkW &link, const char *kind, JumpListBlock &block);

/// Whether a described link has arguments.
bool HasArguments(const JumpListBlock &block);

} // namespace lumenor::services
