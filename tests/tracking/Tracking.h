#pragma once
// A machine of the test's own for the tracker: folders, a log, the registry keys that it reads and writes, all of them
// missing at first, a set clock and set identifiers. Nothing is started.

#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "content/Element.h"
#include "support/ComApartment.h"
#include "support/KeptRegistryKey.h"
#include "support/LogCapture.h"
#include "support/TestFolders.h"
#include "tracking/SetPlatform.h"
#include "tracking/UsageTracker.h"

namespace lumenor {

/// The first and the second identifier: at a usual start those of the machine and of the session.
inline constexpr wchar_t firstId[] = L"00000001-0203-0405-0607-08090a0b0c0d";
inline constexpr wchar_t secondId[] = L"00000002-0203-0405-0607-08090a0b0c0d";
inline constexpr wchar_t thirdId[] = L"00000003-0203-0405-0607-08090a0b0c0d";

/// An entry of the dock.
Element Entry(const std::wstring &head, const std::wstring &actionType = L"exe",
              const std::wstring &actionParams = L"C:\\p.exe");

/// The names and sequence numbers of the records, such as "Mail 3".
std::vector<std::string> Summary(const std::vector<TrackRecord> &records);

/// The names and sequence numbers of a payload's elements, in order.
std::vector<std::string> Elements(const std::string &payload);

/// How often `part` occurs in `text`.
std::size_t Occurrences(const std::string &text, const std::string &part);

class Tracking : public testing::Test {
protected:
  Tracking();

  std::wstring IniFile() const { return folders.Root() + L"\\collector.ini"; }

  /// Has the collector's ini file, and the machine's registry name it.
  void WriteIni(const std::string &content = "[Choice]\nTrack=1\n") const;

  /// What the start of the process does.
  void Start();

  /// A tracker that counts.
  void StartAgreed() {
    WriteIni();
    Start();
  }

  /// Adds buttons named `name` 1, 2 and so on, each a record.
  void AddButtons(int count, const std::wstring &name = L"Button ");

  std::wstring PayloadFolder() const { return folders.UserFolder() + L"\\ruq"; }
  std::wstring TemporaryFile() const { return PayloadFolder() + L"\\ruqDock.tmp"; }

  /// The bytes of the temporary file; empty without one.
  std::string OpenPayload() const { return tests::ReadBytes(TemporaryFile()); }

  /// The bytes of the one file in the folder that ends in ".ruq"; empty when there isn't one alone.
  std::string ClosedPayload() const;

  /// Sets the clock seven days on from the start, to the very second at which the payload is due.
  void MakeDue() const { clock.SetUtc(Moment(2024, 3, 12, 6, 7, 8)); }

  /// "NextTransferTime" as SaveSettings writes it.
  std::wstring NextTransferTime();

  const tests::ComApartment com;
  const tests::TestFolders folders;
  const tests::LogCapture log{folders};
  const tests::KeptRegistryKey user{HKEY_CURRENT_USER, L"Software\\Tarnwick\\Lumenor"};
  const tests::KeptRegistryKey settings{HKEY_CURRENT_USER, L"SOFTWARE\\Tarnwick\\Lumenor\\Dock"};
  const tests::KeptRegistryKey settings32{HKEY_CURRENT_USER, L"SOFTWARE\\Wow6432Node\\Tarnwick\\Lumenor\\Dock"};
  const tests::KeptRegistryKey machine{HKEY_LOCAL_MACHINE, L"SOFTWARE\\Tarnwick\\System Properties"};
  const tests::KeptRegistryKey machine32{HKEY_LOCAL_MACHINE, L"SOFTWARE\\Wow6432Node\\Tarnwick\\System Properties"};
  const tests::KeptRegistryKey collector{HKEY_LOCAL_MACHINE, L"SOFTWARE\\Tarnwick\\MirrApp"};
  const tests::KeptRegistryKey collector32{HKEY_LOCAL_MACHINE, L"SOFTWARE\\Wow6432Node\\Tarnwick\\MirrApp"};
  const SetClock clock;
  const SetIdentifiers identifiers;
  const NotedStarts starts;
  UsageTracker tracker;
};

} // namespace lumenor
