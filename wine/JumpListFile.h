#pragma once
// The jump list that an application has published: a file of UTF-8 text, "<application id>.txt", in the folder
// %APPDATA%\Microsoft\Windows\Recent\CustomDestinations. It is made to be read by a shell script as well: blocks of
// lines that end in a line feed, each with a head in brackets, then "name=value".
//
//     [list]
//     application=<id>
//
//     [task]
//     title=...
//     path=...
//     arguments=...
//     workingFolder=...
//     description=...
//     icon=...
//     iconIndex=0
//
//     [separator]
//
//     [category]
//     name=...
//
//     [destination]
//     title=... and so on, as a task's
//
//     [known category]
//     name=recent, or frequent
//
// An empty line precedes each block but the first. A destination belongs to the category above it; the tasks are last,
// in their order. In a value each control character and '%' is written as '%' and two hexadecimal digits, and so is in
// the file's name each character that a file name can't have. Stateless; any thread.

#include <string>
#include <vector>

#include "system/Windows.h"

namespace lumenor::services {

/// A line of a block.
struct JumpListProperty {
  const char *name;
  std::wstring value;
};

/// A block: the text in its brackets, and its lines.
struct JumpListBlock {
  const char *kind;
  std::vector<JumpListProperty> properties;
};

using JumpListBlocks = std::vector<JumpListBlock>;

/// Makes `blocks` the list of the application, in one step, in place of a former one; also when there are no blocks.
HRESULT WriteJumpList(const std::wstring &applicationId, const JumpListBlocks &blocks);

/// Deletes the list of the application; no failure when it has none.
HRESULT DeleteJumpList(const std::wstring &applicationId);

} // namespace lumenor::services
