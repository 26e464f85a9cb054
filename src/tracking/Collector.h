#pragma once
// The collector: another program of the family that takes closed payloads from the disk. What it leaves on the machine
// tells whether the user agreed to that at all. User-interface thread.

#include <string>

namespace lumenor {

/// What the collector knows the dock by.
inline constexpr wchar_t trackedApplication[] = L"lumenor3.4";

/// The expanded path of the ini file in which the collector keeps the user's choice; empty when the machine knows no
/// collector.
std::wstring CollectorIniFile();

/// Whether the ini file at the expanded `path` says that the user agreed. The line must not be the file's first, and
/// any number that begins with 1 agrees. False when the file can't be read.
bool SaysThatUserAgreed(const std::wstring &path);

/// Starts the collector on the payload folder, without a window and without waiting. A failed start is silent: the
/// payload lies there for the next one.
void StartCollector();

} // namespace lumenor
