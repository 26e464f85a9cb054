#pragma once
// The files of the rolling log: appending, rolling at a size, keeping ten. Only system/Log.cpp writes through this; no
// handle lives between two lines, nothing is locked and nothing raises. Any thread.

#include <string>
#include <vector>

#include "system/Windows.h"

namespace lumenor {

/// The stamp at the head of a line, year first and space-padded, with its tab at the end.
std::string FormatLogTimestamp(const SYSTEMTIME &time);

/// Appends the bytes of `line` to the current log, which is rolled first when it has passed its size.
void AppendLogLine(const std::string &line);

/// Renames the log at the unexpanded `path` after the present moment; when that can't be done it stays.
void RollLogFile(const std::wstring &path);

/// Unexpanded paths of the rolled logs, in the order in which the platform lists them.
std::vector<std::wstring> ListRolledLogs();

/// Deletes from the front of the listing until ten rolled logs are left.
void PruneLogFiles();

} // namespace lumenor
