#include "content/Conditions.h"

#include <cstdlib>
#include <functional>
#include <optional>
#include <utility>

#include "system/Log.h"
#include "system/Paths.h"
#include "system/Registry.h"
#include "system/Text.h"

namespace lumenor {

namespace {

/// The outcome of one condition.
enum class Verdict {
  Holds,
  Fails,         // with a line in the log
  FailsSilently, // without a line
  SettlesAll     // the stub passes, and the remaining conditions aren't checked
};

Verdict HoldsIf(bool holds) { return holds ? Verdict::Holds : Verdict::Fails; }

bool FileExists(const std::wstring &path) {
  return PathExists(ExpandPath(path)) || PathExists(ExpandPath(MapProgramFiles(path)));
}

Verdict CheckFile(const Condition &condition) {
  if (condition.Logic == L"FileExist")
    return HoldsIf(FileExists(condition.Key));
  if (condition.Logic == L"FileNotExist")
    return HoldsIf(!FileExists(condition.Key));
  return Verdict::Holds;
}

bool KeyExists(const std::wstring &path) { return static_cast<bool>(OpenRegistryKey(ExpandPath(path), KEY_READ)); }

/// A value without data settles everything: the stub passes when the condition has no data either, and fails otherwise.
Verdict EmptyRule(const Condition &condition) {
  return condition.ValueData.empty() ? Verdict::SettlesAll : Verdict::FailsSilently;
}

bool EqualsExpanded(const std::wstring &stored, const std::wstring &data) { return ExpandPath(stored) == data; }

template <typename Equals> Verdict CheckText(HKEY key, const Condition &condition, Equals equals) {
  const DWORD length = RegistryStringLength(key, condition.ValueName);
  if (length == 0)
    return EmptyRule(condition);
  const std::optional<std::wstring> stored = ReadRegistryString(key, condition.ValueName, length);
  return HoldsIf(stored && equals(*stored, condition.ValueData));
}

Verdict CheckBinary(HKEY key, const Condition &condition) {
  DWORD size = 0;
  ::RegQueryValueExW(key, condition.ValueName.c_str(), nullptr, nullptr, nullptr, &size);
  if (size == 0)
    return EmptyRule(condition);
  // `size` characters have room for as many bytes, and leave a null after them.
  std::vector<wchar_t> buffer(size + 1);
  DWORD type = REG_NONE;
  const LSTATUS status = ::RegQueryValueExW(key, condition.ValueName.c_str(), nullptr, &type,
                                            reinterpret_cast<BYTE *>(buffer.data()), &size);
  return HoldsIf(status == ERROR_SUCCESS && type == REG_BINARY && buffer.data() == condition.ValueData);
}

/// The value's number; nothing when it is missing or of another type than `wanted`.
template <typename Number> std::optional<Number> ReadNumber(HKEY key, const std::wstring &name, DWORD wanted) {
  Number number = 0;
  DWORD type = REG_NONE, size = sizeof number;
  const LSTATUS status =
      ::RegQueryValueExW(key, name.c_str(), nullptr, &type, reinterpret_cast<BYTE *>(&number), &size);
  return status == ERROR_SUCCESS && type == wanted ? std::optional(number) : std::nullopt;
}

Verdict CheckValue(HKEY key, const Condition &condition) {
  if (condition.ValueType == L"REG_SZ")
    return CheckText(key, condition, EqualsIgnoringCase);
  if (condition.ValueType == L"REG_EXPAND_SZ")
    return CheckText(key, condition, EqualsExpanded);
  if (condition.ValueType == L"REG_MULTI_SZ")
    return CheckText(key, condition, std::equal_to<>());
  if (condition.ValueType == L"REG_BINARY")
    return CheckBinary(key, condition);
  if (condition.ValueType == L"REG_DWORD")
    return HoldsIf(ReadNumber<int>(key, condition.ValueName, REG_DWORD) == ::_wtoi(condition.ValueData.c_str()));
  if (condition.ValueType == L"REG_QWORD")
    return HoldsIf(ReadNumber<std::int64_t>(key, condition.ValueName, REG_QWORD) ==
                   ::_wtoi64(condition.ValueData.c_str()));
  return Verdict::FailsSilently;
}

Verdict CheckRegistry(const Condition &condition) {
  if (condition.Logic == L"KeyExist")
    return HoldsIf(KeyExists(condition.Key));
  if (condition.Logic == L"KeyNotExist")
    return HoldsIf(!KeyExists(condition.Key));
  if (condition.Logic == L"CheckValue") {
    const RegistryKey key = OpenRegistryKey(condition.Key, KEY_READ); // not expanded, unlike in the two other checks
    return key ? CheckValue(key.Get(), condition) : Verdict::Fails;
  }
  return Verdict::FailsSilently;
}

Verdict Check(const Condition &condition) {
  if (condition.Type == L"File")
    return CheckFile(condition);
  if (condition.Type == L"Registry")
    return CheckRegistry(condition);
  return Verdict::FailsSilently;
}

/// Of a stub, and parameters of a condition. A file of some megabytes can hold a million.
constexpr std::size_t mostConditions = 1000;

constexpr std::pair<const wchar_t *, std::wstring Condition::*> params[] = {{L"Logic", &Condition::Logic},
                                                                            {L"Key", &Condition::Key},
                                                                            {L"ValueName", &Condition::ValueName},
                                                                            {L"ValueData", &Condition::ValueData},
                                                                            {L"ValueType", &Condition::ValueType}};

void SetParam(Condition &condition, const std::wstring &name, const std::wstring &text) {
  for (const auto &[paramName, field] : params)
    if (name == paramName)
      condition.*field = text;
}

} // namespace

std::vector<Condition> ReadConditions(const XmlNodePtr &elementNode) {
  std::vector<Condition> conditions;
  for (const XmlNodePtr &node : SelectNodes(elementNode, L"//Condition", mostConditions + 1)) {
    Condition condition;
    condition.Type = NodeAttribute(node, L"type");
    for (const XmlNodePtr &param : SelectNodes(node, L"param", mostConditions))
      SetParam(condition, NodeAttribute(param, L"name"), NodeText(param));
    conditions.push_back(std::move(condition));
  }
  return conditions;
}

bool EvaluateConditions(const std::wstring &stubPath, const std::vector<Condition> &conditions) {
  if (conditions.size() > mostConditions) {
    LogError("DockStub: %S has too many conditions", stubPath.c_str());
    return false;
  }
  for (const Condition &condition : conditions) {
    switch (Check(condition)) {
    case Verdict::Holds:
      continue;
    case Verdict::SettlesAll:
      return true;
    case Verdict::Fails:
      LogInfo("DockStub: %S failed condition %S %S", stubPath.c_str(), condition.Logic.c_str(), condition.Key.c_str());
      return false;
    case Verdict::FailsSilently:
      return false;
    }
  }
  return true;
}

} // namespace lumenor
