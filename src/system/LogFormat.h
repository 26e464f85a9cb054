#pragma once
// A printf format that is checked against its arguments while the program is compiled. The log's calls are templates,
// for their level check to be inlined, and no compiler checks the format of a template by itself.

#include <cstddef>
#include <string_view>
#include <type_traits>

namespace lumenor {

/// Whether a printf conversion takes an argument of type `Arg`: "%S" a wide string, "%s" an 8-bit one, "%p" a pointer,
/// the integer conversions any integer of 32 bits or fewer.
template <typename Arg> constexpr bool ConversionTakes(char conversion) {
  if (conversion == 'S')
    return std::is_same_v<Arg, const wchar_t *> || std::is_same_v<Arg, wchar_t *>;
  if (conversion == 's')
    return std::is_same_v<Arg, const char *> || std::is_same_v<Arg, char *>;
  if (conversion == 'p')
    return std::is_pointer_v<Arg>;
  const bool isInteger = std::string_view("diuxXc").find(conversion) != std::string_view::npos;
  return isInteger && std::is_integral_v<Arg> && sizeof(Arg) <= sizeof(int);
}

/// Whether `format` has one conversion for each of `Args`, of its kind, in order. Flags and a width may stand in a
/// conversion.
template <typename... Args> constexpr bool FormatFits(const char *format) {
  constexpr std::size_t count = sizeof...(Args);
  bool (*const takes[count + 1])(char) = {&ConversionTakes<Args>..., nullptr};
  std::size_t used = 0;
  for (; *format != '\0'; ++format) {
    if (*format != '%' || *++format == '%')
      continue;
    while (*format == '-' || *format == ' ' || (*format >= '0' && *format <= '9'))
      ++format;
    if (used == count || !takes[used](*format))
      return false;
    ++used;
  }
  return used == count;
}

/// The format of a log call whose arguments are `Args`; a format that doesn't fit them doesn't compile.
template <typename... Args> struct LogFormat {
  consteval LogFormat(const char *text) : text(text) {
    if (!FormatFits<Args...>(text))
      throw "the format doesn't fit the arguments";
  }

  const char *text;
};

} // namespace lumenor
