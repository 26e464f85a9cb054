#pragma once
// What a jump list keeps of a shell link. Stateless; any thread.

#include "JumpListFile.h"

#include <shobjidl.h>

namespace lumenor::services {

/// Whether the link is a separator.
bool IsSeparator(IShellLinkW &link);

/// Makes `block` the description of the link, with that kind. E_INVALIDARG for a link without a title, which can't be
/// shown, or without a path: one with only an item list isn't supported. Arguments, which each link has to declare, may
/// be empty.
HRESULT DescribeLink(IShellLinkW &link, const char *kind, JumpListBlock &block);

/// Whether a described link has arguments.
bool HasArguments(const JumpListBlock &block);

} // namespace lumenor::services
