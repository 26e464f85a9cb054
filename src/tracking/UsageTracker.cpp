#include "tracking/UsageTracker.h"

#include <algorithm>
#include <optional>

#include <rpc.h>

#include "system/FileInUse.h"
#include "system/FileReading.h"
#include "system/HResultError.h"
#include "system/Log.h"
#include "system/Owner.h"
#include "system/Paths.h"
#include "system/Product.h"
#include "system/Registry.h"
#include "system/Text.h"
#include "tracking/Checksum.h"
#include "tracking/Collector.h"
#include "tracking/MachineValues.h"
#include "tracking/Payload.h"

namespace lumenor {

namespace {

constexpr wchar_t payloadEnding[] = L".ruq";

constexpr wchar_t appIdValue[] = L"AppID";
constexpr wchar_t nextTransferValue[] = L"NextTransferTime";
constexpr wchar_t nextElementValue[] = L"NextElementSeq";

constexpr std::size_t recordsPerBatch = 20;
constexpr LONGLONG maxPayloadBytes = 51200;
constexpr ULONGLONG transferPeriod = 6048000000000; // seven days in file time's 100 nanoseconds

SYSTEMTIME LocalNow() {
  SYSTEMTIME now = {};
  ::GetLocalTime(&now);
  return now;
}

/// Nothing when the fields make no time.
std::optional<ULONGLONG> ToFileTime(const SYSTEMTIME &time) {
  FILETIME fileTime = {};
  if (!::SystemTimeToFileTime(&time, &fileTime))
    return std::nullopt;
  return ULARGE_INTEGER{{fileTime.dwLowDateTime, fileTime.dwHighDateTime}}.QuadPart;
}

ULONGLONG FileTimeOf(const SYSTEMTIME &time) {
  const std::optional<ULONGLONG> fileTime = ToFileTime(time);
  if (!fileTime)
    ThrowLastError();
  return *fileTime;
}

/// A text that the platform made of an identifier.
struct RpcTextTraits {
  using Handle = RPC_WSTR;
  static Handle Empty() noexcept { return nullptr; }
  static void Close(Handle text) noexcept { ::RpcStringFreeW(&text); }
};

/// The text form of a new identifier; nothing when the platform makes none.
std::optional<std::wstring> NewUuid() {
  UUID uuid = {};
  const RPC_STATUS made = ::UuidCreate(&uuid);
  Owner<RpcTextTraits> text;
  // One that is unique on this machine only is better than none: it still distinguishes the machine's sessions.
  if ((made != RPC_S_OK && made != RPC_S_UUID_LOCAL_ONLY) || ::UuidToStringW(&uuid, text.Put()) != RPC_S_OK)
    return std::nullopt;
  return reinterpret_cast<const wchar_t *>(text.Get());
}

/// A button's event; its name is what the user reads on it.
TrackRecord IconEvent(const Element &element, const wchar_t *action) {
  return {.Name = element.Head,
          .Type = L"DockIconType",
          .Feature = L"Dock",
          .ActionType = element.ActionType,
          .ActionParams = element.ActionParams,
          .Action = action};
}

TrackRecord ClickEvent(const Element &element, const wchar_t *subFeature) {
  TrackRecord event = IconEvent(element, L"Click");
  event.SubFeature = subFeature;
  event.TouchPoint = L"Dock";
  return event;
}

/// What was searched for, and where, is private and never recorded.
TrackRecord SearchEvent(const wchar_t *type) {
  return {.Name = L"Search", .Type = type, .Feature = L"Dock", .Action = L"Search"};
}

TrackRecord DockEvent(const wchar_t *action, std::uint32_t subSessionId) {
  return {.Name = L"Dock", .Type = L"Window", .Feature = L"Dock", .Action = action, .SubSessionID = subSessionId};
}

/// Whether two records are of the same action, which is counted in one of them.
bool IsSameUse(const TrackRecord &left, const TrackRecord &right) {
  return left.Action == right.Action && left.Type == right.Type && left.ActionType == right.ActionType &&
         left.ActionParams == right.ActionParams && left.SubFeature == right.SubFeature && left.Name == right.Name;
}

} // namespace

// The start of the process.

void UsageTracker::LoadAppId() {
  RegistryKeyHolder holder;
  if (!OpenOrCreateRegistryPath(product::dockKey, holder, KEY_READ | KEY_WRITE))
    return LogFatal("Unable to create %S", product::dockKey);
  LSTATUS status = ERROR_SUCCESS;
  applicationId = ReadRegistryString(holder.key.Get(), appIdValue, status).value_or(std::wstring());
  if (!applicationId.empty())
    return LogInfo("AppID is %S", applicationId.c_str());
  // One that can't be read just now is still the machine's: another in its place would make it a stranger for good.
  if (status != ERROR_SUCCESS && status != ERROR_FILE_NOT_FOUND)
    return LogError("Unable to read AppID: %d", status);
  applicationId = NewUuid().value_or(std::wstring());
  if (applicationId.empty() || WriteRegistryString(holder.key.Get(), appIdValue, applicationId) != ERROR_SUCCESS)
    LogFatal("Failed to create AppID");
}

void UsageTracker::ReadOptIn() {
  const std::wstring iniFile = CollectorIniFile();
  if (iniFile.empty() || !PathExists(iniFile))
    return;
  enabled = SaysThatUserAgreed(iniFile) ? 1 : 0;
  LogInfo("RUQMENT: RuqOptIn=%d", enabled);
}

void UsageTracker::InitSessionInfo() {
  appName = trackedApplication;
  version = trackedVersion;
  platform = ReadMachineValue(L"Platform").value_or(std::wstring());
  brand = ReadMachineValue(L"pcbrand").value_or(std::wstring());
  applicationId = ReadMachineValue(L"applicationid").value_or(applicationId);
  sessionStart = UtcNow();
  sessionEnd = {};
}

void UsageTracker::StartSession() {
  const std::optional<std::wstring> uuid = NewUuid();
  if (!uuid)
    return;
  sessionId = *uuid;
  sessionStartLocal = LocalNow();
  nextElementSeq = 1;
}

void UsageTracker::LoadNextTransferTime() {
  SetNextTransferTime(); // for the case that no time can be read
  RegistryKeyHolder holder;
  if (!OpenOrCreateRegistryPath(product::trackingKey32, holder, KEY_READ))
    return;
  const SYSTEMTIME read = ParseTime(ReadRegistryString(holder.key.Get(), nextTransferValue).value_or(std::wstring()));
  // A text that is no date, such as an empty one, would fail at every comparison.
  if (ToFileTime(read))
    nextTransferTime = read;
}

// What the user does.

void UsageTracker::TrackDockOpen() {
  if (enabled != 0)
    Add(DockEvent(L"Open", subSessionId));
}

void UsageTracker::TrackDockClose() {
  if (enabled != 0)
    Add(DockEvent(L"Close", subSessionId));
}

void UsageTracker::TrackIconClick(const Element &element) { Count(ClickEvent(element, L"")); }

void UsageTracker::TrackPopupClick(const Element &element) { Count(ClickEvent(element, L"DockPopup")); }

void UsageTracker::TrackIconAdd(const Element &element) { Count(IconEvent(element, L"Add")); }

void UsageTracker::TrackIconDelete(const Element &element) { Count(IconEvent(element, L"Delete")); }

void UsageTracker::TrackUrlSearch() { Count(SearchEvent(L"Url")); }

void UsageTracker::TrackHelpSearch() { Count(SearchEvent(L"helpSearch")); }

/// An action that has a record is counted there, with its first time, and never leads to a Flush.
void UsageTracker::Count(TrackRecord event) {
  if (enabled == 0)
    return;
  const auto known =
      std::find_if(records.begin(), records.end(), [&](const TrackRecord &record) { return IsSameUse(record, event); });
  if (known != records.end()) {
    ++known->ActionCount;
    return;
  }
  event.ActionCount = 1;
  Add(std::move(event));
}

void UsageTracker::Add(TrackRecord record) {
  record.SessionID = sessionId;
  record.SequenceId = nextElementSeq++;
  record.TrackTimestamp = UtcNow();
  records.push_back(std::move(record));
  if (records.size() >= recordsPerBatch)
    Flush();
}

// Writing and transfer.

void UsageTracker::Flush() {
  if (enabled == 0)
    return;
  WritePayload(false);
  if (IsTransferDue()) {
    WritePayload(true);
    TransferPayload();
    InitSessionInfo();
    SetNextTransferTime();
    SaveSettings();
  } else {
    CheckPayloadSize();
  }
  if (IsSessionDayOver())
    StartSession();
}

void UsageTracker::WritePayload(bool close) {
  if (enabled == 0)
    return;
  std::optional<Payload> payload = Payload::Open();
  if (!payload)
    return;
  if (close) {
    sessionEnd = UtcNow();
    payload->InsertSessionInfo(appName, {{L"version", version},
                                         {L"start", FormatUtcTime(sessionStart)},
                                         {L"end", FormatUtcTime(sessionEnd)},
                                         {L"brand", brand},
                                         {L"platform", platform},
                                         {L"applicationid", applicationId}});
  }
  for (const TrackRecord &record : records)
    payload->Append(record);
  payload->Save();
  records.clear();
}

/// Unlike the periodic transfer this one keeps the time of the next: a busy week has more payloads, not later ones.
void UsageTracker::CheckPayloadSize() {
  if (enabled == 0)
    return;
  LARGE_INTEGER size = {};
  if (const FileHandle file = OpenForReading(PayloadPath()); !file || !::GetFileSizeEx(file.Get(), &size))
    return;
  if (size.QuadPart <= maxPayloadBytes)
    return;
  WritePayload(true);
  InitSessionInfo();
  TransferPayload();
}

void UsageTracker::TransferPayload() {
  if (enabled == 0)
    return;
  const std::wstring source = PayloadPath();
  const std::wstring target = ExpandPath(product::payloadFolder) + UIntToText(FileChecksum(source)) + payloadEnding;
  LogInfo("Attempting to move file from : %S to %S", source.c_str(), target.c_str());
  ThrowIfFalse(TryWhileInUse([&] { return ::MoveFileW(source.c_str(), target.c_str()) != FALSE; }));
  StartCollector();
}

void UsageTracker::SaveSettings() {
  if (enabled == 0)
    return;
  RegistryKey key = OpenRegistryKey(product::trackingKey32, KEY_WRITE);
  if (!key)
    key = OpenRegistryKey(product::trackingKey, KEY_WRITE);
  if (!key)
    return;
  WriteRegistryString(key.Get(), nextElementValue, UIntToText(nextElementSeq));
  WriteRegistryString(key.Get(), nextTransferValue, FormatTime(nextTransferTime));
}

void UsageTracker::SetNextTransferTime() {
  if (enabled == 0)
    return;
  const ULARGE_INTEGER due{.QuadPart = FileTimeOf(UtcNow()) + transferPeriod};
  const FILETIME fileTime = {due.LowPart, due.HighPart};
  ThrowIfFalse(::FileTimeToSystemTime(&fileTime, &nextTransferTime));
}

bool UsageTracker::IsTransferDue() const { return FileTimeOf(UtcNow()) >= FileTimeOf(nextTransferTime); }

bool UsageTracker::IsSessionDayOver() const {
  SYSTEMTIME end = sessionStartLocal;
  end.wHour = 23;
  end.wMinute = 59;
  end.wSecond = 59;
  end.wMilliseconds = 999;
  return FileTimeOf(LocalNow()) >= FileTimeOf(end);
}

} // namespace lumenor
