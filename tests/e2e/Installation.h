#pragma once
// The installed dock: the program in its folder, the pictures beside it, stub files and language resources as a content
// service leaves them, a user without documents. It is in the real folders of the prefix, which no other run uses,
// since the %ProgramFiles% of a program can't be redirected from outside.

#include <optional>
#include <string>
#include <vector>

#include "support/Recorder.h"
#include "support/TestFolders.h"
#include "system/Windows.h"

namespace lumenor::e2e {

/// One entry of a document or stub.
struct Entry {
  std::wstring head = {};
  std::wstring actionType = {};
  std::wstring actionParams = {};
  std::wstring image = L"..\\resources\\test.png";
  std::wstring toolTip = {};
  int position = 0;
  std::wstring conditions = {}; // XML of the Condition nodes, if any
};

using tests::Exists;
using tests::ReadBytes;
using tests::RecordedStart;
using tests::WriteBytes;

constexpr wchar_t mainDocument[] = L"Lumenor.MainFrame.Windows.DockViewWindow.Main";
constexpr wchar_t forYouList[] = L"Lumenor.MainFrame.Controls.DockPopup.ForYou";
constexpr wchar_t userDocument[] = L"Lumenor.MainFrame.Windows.DockViewWindow.User";

class Installation {
public:
  /// Clears what an earlier test or the dock left and installs the program, its pictures and English texts, a recorder
  /// as the main application and the dock's own registry keys. No stub, no document. The welcome screen counts as
  /// shown: it is modal, and would block every other test.
  Installation();
  ~Installation();
  Installation(const Installation &) = delete;
  Installation &operator=(const Installation &) = delete;

  std::wstring DockExe() const { return programFolder + L"\\Dock\\LumenorDock.exe"; }

  /// The recorder, to be named in entries; it notes the command line that it was started with.
  std::wstring Recorder() const { return programFolder + L"\\Recorder.exe"; }

  /// The command line that starts the recorder with `arguments`, as an entry has it and as it is recorded.
  std::wstring RecorderCommand(const std::wstring &arguments) const { return L"\"" + Recorder() + L"\" " + arguments; }

  /// An entry that starts the recorder with `arguments`.
  Entry RecorderEntry(const std::wstring &head, const std::wstring &arguments, int position = 0) const {
    return {.head = head, .actionType = L"exe", .actionParams = RecorderCommand(arguments), .position = position};
  }

  /// The folder of the pictures, "..\resources" from the program.
  std::wstring ResourcesFolder() const { return programFolder + L"\\resources"; }

  /// The folder of the user's documents.
  std::wstring UserFolder() const { return userFolder; }

  std::wstring DocumentPath(const std::wstring &name) const { return userFolder + L"\\" + name + L".xml"; }

  /// The folder of the rolling log.
  std::wstring LogFolder() const { return commonFolder + L"\\Logs"; }

  /// Writes a stub of `document` into the locale folder; `number` makes its file name.
  void WriteStub(const std::wstring &locale, const std::wstring &document, int number, const Entry &entry) const;

  /// Writes any text as a stub of `document`.
  void WriteRawStub(const std::wstring &locale, const std::wstring &document, int number,
                    const std::string &text) const;

  /// Writes a whole document of the user.
  void WriteDocument(const std::wstring &name, const std::vector<Entry> &entries) const;

  /// Writes the list of search providers that the dock finds first: head, action word, parameters and picture.
  void WriteSearchProviders(const std::vector<Entry> &providers) const;

  /// Writes any text as that list.
  void WriteRawSearchProviders(const std::string &text) const;

  /// Removes what WriteSearchProviders has written, so that the list that the product ships is found.
  void UseFactorySearchProviders() const;

  /// Installs the stubs that the product ships.
  void UseFactoryContent() const;

  /// Writes a file that is none of the dock's, and returns its path.
  std::wstring WriteAside(const std::wstring &fileName, const std::string &bytes) const;

  /// Puts a recorder where the program of the video tour is.
  void InstallTour() const;

  /// Writes the user's consent to being counted, or the refusal, into the file of the collector that the machine's
  /// registry names.
  void OptIn(bool agreed = true) const;

  /// Puts a recorder where the machine's registry says that the collector is, and returns its path.
  std::wstring InstallCollector() const;

  /// Three fixed buttons that start the recorder and two of the user's, as stubs in "xx_xx".
  void WriteUsualStubs() const;

  /// Every line of the log files, in order.
  std::vector<std::string> LogLines() const;

  /// Whether a line of the log holds `text`.
  bool Logged(const std::string &text) const;

  /// How often the log says that the time of the For You list was asked for: twice at each change in its folder.
  int ForYouReadings() const;

  /// What recorders were started with since the start of the test, in order.
  std::vector<RecordedStart> RecordedStarts() const;

  /// The command lines among it.
  std::vector<std::wstring> RecordedCommandLines() const;

  /// Waits until `count` command lines are recorded, a minute at most; returns all that there are by then.
  std::vector<std::wstring> WaitForCommandLines(std::size_t count) const;

private:
  void RemoveAll() const;

  std::wstring programFolder;
  std::wstring commonFolder;
  std::wstring userFolder;
};

/// A content document of the name, as bytes.
std::string DocumentXml(const std::wstring &name, const std::vector<Entry> &entries);

/// The number of `needle` in `text`.
int CountOf(const std::string &text, const std::string &needle);

/// The dock's registry values, REG_SZ below HKEY_CURRENT_USER "SOFTWARE\Tarnwick\Lumenor".
std::optional<std::wstring> DockValue(const std::wstring &name);
void SetDockValue(const std::wstring &name, const std::wstring &text);
void RemoveDockValue(const std::wstring &name);

/// What the tracking keeps from one run to the next: REG_SZ below HKEY_CURRENT_USER
/// "SOFTWARE\Wow6432Node\Tarnwick\Lumenor\Dock".
std::optional<std::wstring> TrackingValue(const std::wstring &name);
void SetTrackingValue(const std::wstring &name, const std::wstring &text);

/// A REG_SZ value below HKEY_LOCAL_MACHINE "SOFTWARE\Tarnwick\System Properties", as an installer of the family leaves
/// it.
void SetMachineValue(const std::wstring &name, const std::wstring &text);

/// The command that the platform runs when the user's session starts; nothing when the dock isn't among them.
std::optional<std::wstring> StartupValue();

} // namespace lumenor::e2e
