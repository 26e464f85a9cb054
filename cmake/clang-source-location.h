#pragma once

// clang 14 can't tell a std::source_location, and the library's header leaves the class out then. Included ahead of each
// source, and nothing where clang can.
#if !__has_builtin(__builtin_source_location)
namespace std {
struct source_location {
  static constexpr source_location current(const char *file = __builtin_FILE(), unsigned line = __builtin_LINE()) {
    return {file, line};
  }
  constexpr const char *file_name() const { return file; }
  constexpr unsigned line() const { return number; }
  const char *file = "";
  unsigned number = 0;
};
} // namespace std
#endif
