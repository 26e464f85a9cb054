#include "failing/ProductCode.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string_view>
#include <vector>

#include <cxxabi.h>

#include "support/TestFolders.h"
#include "system/Windows.h"

namespace lumenor::failing {

namespace {

struct Function {
  std::uintptr_t begin;
  bool isProduct;
  std::string name; // as the compiler writes it
};

std::vector<Function> functions; // by their begins
std::uintptr_t endOfProgram = 0;

/// The entry function and what its file has for itself stand outside of the product's namespace. The operations of
/// smart pointers are compiled into whoever uses them; the test's are told from the product's by OwnCode.
bool IsProductName(std::string_view name) {
  for (const std::string_view others : {"7lumenor5tests", "7lumenor4desk", "7lumenor7failing"})
    if (name.find(others) != std::string_view::npos)
      return false;
  return name.find("7lumenor") != std::string_view::npos || name == "wWinMain" ||
         name.starts_with("_ZN12_GLOBAL__N_1") || name.find("9Microsoft3WRL") != std::string_view::npos;
}

/// The file of this program.
std::string ReadOwnFile() {
  wchar_t path[MAX_PATH] = {};
  ::GetModuleFileNameW(nullptr, path, MAX_PATH);
  return tests::ReadBytes(path);
}

/// The symbol table of an executable file, as far as its functions go.
class SymbolTable {
public:
  explicit SymbolTable(const std::string &file) : file(file) {
    IMAGE_DOS_HEADER dos = {};
    Read(0, dos);
    Read(static_cast<std::size_t>(dos.e_lfanew), headers);
    sections = static_cast<std::size_t>(dos.e_lfanew) + sizeof(DWORD) + sizeof(IMAGE_FILE_HEADER) +
               headers.FileHeader.SizeOfOptionalHeader;
    symbols = headers.FileHeader.PointerToSymbolTable;
    strings = symbols + headers.FileHeader.NumberOfSymbols * std::size_t{IMAGE_SIZEOF_SYMBOL};
  }

  /// Where the program ends in memory.
  std::uintptr_t End() const { return Base() + headers.OptionalHeader.SizeOfImage; }

  std::vector<Function> Functions() const {
    const std::uintptr_t base = Base();
    std::vector<Function> found;
    for (std::size_t i = 0; i < headers.FileHeader.NumberOfSymbols; ++i) {
      IMAGE_SYMBOL symbol = {};
      Read(symbols + i * IMAGE_SIZEOF_SYMBOL, symbol);
      i += symbol.NumberOfAuxSymbols;
      if (symbol.SectionNumber < 1 || !IsCode(symbol.SectionNumber))
        continue;
      std::string name = Name(symbol);
      if (name.starts_with('.'))
        continue; // the section itself
      const bool isProduct = IsProductName(name);
      found.push_back({base + Section(symbol.SectionNumber).VirtualAddress + symbol.Value, isProduct, std::move(name)});
    }
    std::ranges::sort(found, {}, &Function::begin);
    return found;
  }

private:
  static std::uintptr_t Base() { return reinterpret_cast<std::uintptr_t>(::GetModuleHandleW(nullptr)); }

  template <typename T> void Read(std::size_t at, T &to) const { std::memcpy(&to, file.data() + at, sizeof to); }

  IMAGE_SECTION_HEADER Section(int number) const {
    IMAGE_SECTION_HEADER section = {};
    Read(sections + static_cast<std::size_t>(number - 1) * sizeof section, section);
    return section;
  }

  bool IsCode(int number) const { return (Section(number).Characteristics & IMAGE_SCN_CNT_CODE) != 0; }

  std::string Name(const IMAGE_SYMBOL &symbol) const {
    if (symbol.N.Name.Short != 0) {
      const auto *const text = reinterpret_cast<const char *>(symbol.N.ShortName);
      return {text, std::find(text, text + IMAGE_SIZEOF_SHORT_NAME, '\0')};
    }
    return file.data() + strings + symbol.N.Name.Long;
  }

  const std::string &file;
  IMAGE_NT_HEADERS headers = {};
  std::size_t sections = 0;
  std::size_t symbols = 0;
  std::size_t strings = 0;
};

const Function *FunctionAt(const void *address) {
  const auto place = reinterpret_cast<std::uintptr_t>(address);
  const auto next = std::ranges::upper_bound(functions, place, {}, &Function::begin);
  return next == functions.begin() || place >= endOfProgram ? nullptr : &*(next - 1);
}

} // namespace

void ReadSymbols() {
  const std::string file = ReadOwnFile();
  const SymbolTable table(file);
  functions = table.Functions();
  endOfProgram = table.End();
}

bool IsProductCode(const void *address) {
  const Function *const function = FunctionAt(address);
  return function != nullptr && function->isProduct;
}

std::string DescribeCode(const void *address) {
  const Function *const function = FunctionAt(address);
  if (function == nullptr)
    return "?";
  int status = 0;
  char *const readable = abi::__cxa_demangle(function->name.c_str(), nullptr, nullptr, &status);
  char distance[20];
  std::snprintf(distance, sizeof distance, "+0x%llx",
                static_cast<unsigned long long>(reinterpret_cast<std::uintptr_t>(address) - function->begin));
  std::string text = (readable == nullptr ? function->name : readable) + distance;
  std::free(readable);
  return text;
}

} // namespace lumenor::failing
