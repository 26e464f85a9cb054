#pragma once
// The collector: another program of the product family, which takes closed payloads from the disk. Its ini file says
// whether the user agreed to that. User-interface thread.

#include <string>

namespace lumenor {

/// What the collector knows the dock by, and the version that it puts the payloads to. Both belong to the collector's
/// format and don't follow the product's version.
inline constexpr wchar_t trackedApplication[] = L"lumenor3.4";
inline constexpr wchar_t trackedVersion[] = L"3.4";

/// The expanded path of the ini file in which the collector keeps the user's choice; empty when no collector is
/// installed.
std::wstring CollectorIniFile();

/// Whether the ini file at the expanded `path` says that the user agreed. The line must not be the file's first, and
/// any number that begins with 1 counts. False when the file can't be read.
bool SaysThatUserAgreed(const std::wstring &path);

/// Starts the collector on the payload folder, without a window and without waiting. A failed start is silent: the
/// payload stays there for the next one.
void StartCollector();

} // namespace lumenor
