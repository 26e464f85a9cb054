#pragma once
// What the dock finds on the machine and leaves there: its documents, its registry keys, the event log, what it starts.

#include <cstdint>
#include <string>
#include <vector>

#include "support/KeptRegistryKey.h"
#include "support/LogCapture.h"
#include "support/OptIn.h"
#include "support/TestFolders.h"
#include "system/Windows.h"

struct IDataObject;
struct IDropTarget;

namespace lumenor::failing {

using Texts = std::vector<std::wstring>;

/// What a process can leave behind.
struct Holdings {
  int handles = 0;
  int gdiObjects = 0;
  int windows = 0;
  std::int64_t blocks = 0; // of memory by operator new

  bool operator==(const Holdings &) const = default;
};

/// One for each process, on its main thread.
class World {
public:
  World();

  /// Puts the user's files, the registry and the state of the process to the beginning. The user has a button for an
  /// address, one for a shortcut and one for a file; no picture is shaded yet.
  void Reset() const;

  /// Takes all that the first start makes.
  void ForgetUser() const;

  /// The labels in the user's document; one text "unreadable" when it can't be read.
  Texts Heads() const;

  /// Files of the user's folder that no dock leaves: halves of saved ones, copies of unread ones.
  Texts Leftovers() const;

  /// The payloads' records, of open and of closed payloads.
  int Records() const;

  /// Makes the payload due for its transfer.
  void MakePayloadDue() const;

  /// A file that a user could drop, "Dropped" by its label, and a shortcut to it.
  std::wstring DroppedPath() const { return folders.Root() + L"\\Dropped.txt"; }
  std::wstring ShortcutPath() const { return folders.Root() + L"\\Shortcut.lnk"; }

  /// Writes a list for the For You flyout with so many rows.
  void WriteForYou(int rows) const;

  /// The lines about failures in the log since Reset.
  std::vector<std::string> FailureLines() const;

  /// What was reported to the event log since Reset.
  static const Texts &Reports();
  static void ForgetReports();

  /// What the shell was asked to start since Reset.
  static const Texts &Launches();

  /// The drop target of the bar's window, null without one; what a drag does instead of the platform's.
  static IDropTarget *DropTarget();
  static HRESULT (*drag)(IDataObject *data);

  /// Whether the dock has refused a drop since Reset, which the program that is dragged from is told.
  static bool hasRefused;

  static Holdings CountHoldings();

  const tests::TestFolders folders;

private:
  void WriteContent() const;
  void WritePictures() const;
  void WriteButtons() const;
  void WriteDocument(const std::wstring &name, const Texts &heads, const std::wstring &action = L"url") const;
  void WriteRows(const std::wstring &name, const Texts &rows) const;

  const tests::KeptRegistryKey registry{HKEY_CURRENT_USER, L"SOFTWARE\\Tarnwick\\Lumenor"};
  const tests::KeptRegistryKey tracking{HKEY_CURRENT_USER, L"SOFTWARE\\Wow6432Node\\Tarnwick\\Lumenor\\Dock"};
  const tests::OptIn optIn{folders};
  const tests::LogCapture log{folders};
};

} // namespace lumenor::failing
