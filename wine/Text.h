#pragma once
// Texts as the services need them. Stateless; any thread.

#include <string>
#include <string_view>

namespace lumenor::services {

std::string Utf8(std::wstring_view text);

/// The value of an environment variable; empty where it isn't set.
std::wstring EnvironmentText(const wchar_t *name);

} // namespace lumenor::services
