#pragma once
// Conversions of texts. Stateless; any thread.

#include <string>
#include <string_view>

namespace lumenor::services {

std::string Utf8(std::wstring_view text);

/// The value of an environment variable; empty when it isn't set.
std::wstring EnvironmentText(const wchar_t *name);

} // namespace lumenor::services
