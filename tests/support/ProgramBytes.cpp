#include "support/ProgramBytes.h"

namespace lumenor::tests {
namespace {

using namespace std::literals;

constexpr std::size_t memoryAddress = 0x1000; // of the resources
constexpr std::size_t directoryBytes = 16, entryBytes = 8, leafBytes = 16;
constexpr std::size_t pathBytes = 2 * (directoryBytes + entryBytes) + leafBytes; // of a type: name, language, leaf
constexpr std::uint64_t isDirectory = 0x80000000;
constexpr std::size_t dataDirectories = 16;

std::string Directory(std::size_t entries) { return std::string(14, '\0') + NumberBytes(entries, 2); }

std::string ResourceSection(const std::vector<std::pair<std::uint32_t, std::string>> &resources) {
  const std::size_t rootBytes = directoryBytes + resources.size() * entryBytes;
  const std::size_t dataStart = rootBytes + resources.size() * pathBytes;
  std::string root = Directory(resources.size()), paths, data;
  for (const auto &[type, content] : resources) {
    const std::size_t path = rootBytes + paths.size();
    const std::size_t language = path + directoryBytes + entryBytes, leaf = language + directoryBytes + entryBytes;
    root += NumberBytes(type, 4) + NumberBytes(isDirectory | path, 4);
    paths += Directory(1) + NumberBytes(1, 4) + NumberBytes(isDirectory | language, 4);
    paths += Directory(1) + NumberBytes(0x409, 4) + NumberBytes(leaf, 4);
    paths +=
        NumberBytes(memoryAddress + dataStart + data.size(), 4) + NumberBytes(content.size(), 4) + std::string(8, '\0');
    data += content;
  }
  return root + paths + data;
}

} // namespace

std::string NumberBytes(std::uint64_t number, int count) {
  std::string bytes;
  for (int i = 0; i < count; ++i)
    bytes += static_cast<char>(number >> 8 * i & 0xFF);
  return bytes;
}

std::string MakeProgram(const std::vector<std::pair<std::uint32_t, std::string>> &resources) {
  const std::string section = ResourceSection(resources);
  const std::size_t fileBytes = (section.size() + programHeadBytes - 1) / programHeadBytes * programHeadBytes;
  const std::size_t memoryBytes = (fileBytes + memoryAddress - 1) / memoryAddress * memoryAddress;
  std::string program = "MZ" + std::string(58, '\0') + NumberBytes(64, 4);
  program += "PE\0\0"s + NumberBytes(0x8664, 2) + NumberBytes(1, 2) + std::string(12, '\0') +
             NumberBytes(112 + 8 * dataDirectories, 2) + NumberBytes(0x22, 2);
  program += NumberBytes(0x20B, 2) + std::string(6, '\0') + NumberBytes(fileBytes, 4) + std::string(8, '\0') +
             NumberBytes(memoryAddress, 4) + NumberBytes(0x140000000, 8) + NumberBytes(memoryAddress, 4) +
             NumberBytes(programHeadBytes, 4);
  program += NumberBytes(6, 2) + std::string(6, '\0') + NumberBytes(6, 2) + std::string(6, '\0') +
             NumberBytes(memoryAddress + memoryBytes, 4) + NumberBytes(programHeadBytes, 4) + std::string(4, '\0') +
             NumberBytes(2, 2) + NumberBytes(0, 2);
  program += NumberBytes(0x100000, 8) + NumberBytes(0x1000, 8) + NumberBytes(0x100000, 8) + NumberBytes(0x1000, 8) +
             NumberBytes(0, 4) + NumberBytes(dataDirectories, 4);
  program += std::string(16, '\0') + NumberBytes(memoryAddress, 4) + NumberBytes(section.size(), 4) +
             std::string(8 * (dataDirectories - 3), '\0');
  program += ".rsrc\0\0\0"s + NumberBytes(section.size(), 4) + NumberBytes(memoryAddress, 4) +
             NumberBytes(fileBytes, 4) + NumberBytes(programHeadBytes, 4) + std::string(12, '\0') +
             NumberBytes(0x40000040, 4);
  program.resize(programHeadBytes, '\0');
  program += section;
  program.resize(programHeadBytes + fileBytes, '\0');
  return program;
}

} // namespace lumenor::tests
