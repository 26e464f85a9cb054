#pragma once
// Programs with resources and nothing else, as bytes.

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace lumenor::tests {

/// Of what MakeProgram makes; the resources begin behind it.
constexpr std::size_t programHeadBytes = 0x200;

/// `number` in `count` bytes, least significant first.
std::string NumberBytes(std::uint64_t number, int count);

/// A program for 64 bits with a resource of each of these types, in the order of their numbers, each called 1 and for
/// one language. No code.
std::string MakeProgram(const std::vector<std::pair<std::uint32_t, std::string>> &resources);

} // namespace lumenor::tests
