#include "e2e/Installation.h"

#include <algorithm>
#include <cstdlib>

#include <gtest/gtest.h>

#include "e2e/Screen.h"
#include "system/Handles.h"

namespace lumenor::e2e {

using tests::ListFolder;
using tests::MakeFolders;
using tests::Utf8;

namespace {

constexpr wchar_t dockKey[] = L"SOFTWARE\\Tarnwick\\Lumenor";
constexpr wchar_t trackingKey[] = L"SOFTWARE\\Wow6432Node\\Tarnwick\\Lumenor\\Dock";
constexpr wchar_t collectorKey[] = L"SOFTWARE\\Tarnwick\\MirrApp";
constexpr wchar_t machineKey[] = L"SOFTWARE\\Tarnwick\\System Properties";
constexpr wchar_t startupKey[] = L"Software\\Microsoft\\Windows\\CurrentVersion\\Run";
constexpr wchar_t startupValue[] = L"LumenorDock";
constexpr wchar_t englishTexts[] = L"\\BaseContent\\LangRes\\LangRes_VRA\\en_xx";
constexpr wchar_t recordVariable[] = L"LUMENOR_RECORD";

std::wstring Variable(const wchar_t *name) {
  wchar_t text[MAX_PATH] = {};
  ::GetEnvironmentVariableW(name, text, MAX_PATH);
  return text;
}

bool IsFolder(const std::wstring &path) { return (::GetFileAttributesW(path.c_str()) & FILE_ATTRIBUTE_DIRECTORY) != 0; }

void CopyInto(const std::wstring &from, const std::wstring &to) {
  ASSERT_TRUE(::CopyFileW(from.c_str(), to.c_str(), FALSE)) << "copying a file failed with " << ::GetLastError();
}

/// The files of the folder, without those of the folders in it.
void CopyFolder(const std::wstring &from, const std::wstring &to) {
  MakeFolders(to);
  for (const std::wstring &name : ListFolder(from))
    if (!IsFolder(from + L"\\" + name))
      CopyInto(from + L"\\" + name, to + L"\\" + name);
}

std::wstring Escaped(const std::wstring &text) {
  std::wstring out;
  for (const wchar_t c : text) {
    if (c == L'&')
      out += L"&amp;";
    else if (c == L'<')
      out += L"&lt;";
    else
      out += c;
  }
  return out;
}

std::wstring ElementXml(const Entry &entry) {
  return L"<Element><Head>" + Escaped(entry.head) + L"</Head><ToolTip>" + Escaped(entry.toolTip) +
         L"</ToolTip><ActionType>" + entry.actionType + L"</ActionType><ActionParams>" + Escaped(entry.actionParams) +
         L"</ActionParams><Image>" + Escaped(entry.image) + L"</Image><Position>" + std::to_wstring(entry.position) +
         L"</Position>" + entry.conditions + L"</Element>";
}

void MakeRegistryKeys() {
  RegistryKey key;
  ::RegCreateKeyExW(HKEY_CURRENT_USER, dockKey, 0, nullptr, 0, KEY_READ, nullptr, key.Put(), nullptr);
}

void RemoveRegistryKeys() {
  ::RegDeleteTreeW(HKEY_CURRENT_USER, L"SOFTWARE\\Tarnwick");
  ::RegDeleteTreeW(HKEY_CURRENT_USER, L"SOFTWARE\\Wow6432Node\\Tarnwick");
  ::RegDeleteTreeW(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Tarnwick");
  ::RegDeleteKeyValueW(HKEY_CURRENT_USER, startupKey, startupValue);
}

/// The shell keeps published jump lists here.
std::wstring JumpListFolder() { return Variable(L"APPDATA") + L"\\Microsoft\\Windows\\Recent\\CustomDestinations"; }

void SetTextValue(HKEY root, const wchar_t *key, const std::wstring &name, const std::wstring &text) {
  const auto bytes = static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t));
  ASSERT_EQ(ERROR_SUCCESS, ::RegSetKeyValueW(root, key, name.c_str(), REG_SZ, text.c_str(), bytes));
}

std::optional<std::wstring> TextValue(const wchar_t *key, const wchar_t *name) {
  wchar_t text[256] = {};
  DWORD bytes = sizeof(text) - sizeof(wchar_t);
  if (::RegGetValueW(HKEY_CURRENT_USER, key, name, RRF_RT_REG_SZ, nullptr, text, &bytes) != ERROR_SUCCESS)
    return std::nullopt;
  return text;
}

} // namespace

Installation::Installation()
    : programFolder(Variable(L"ProgramFiles") + L"\\Tarnwick\\Lumenor"),
      commonFolder(Variable(L"ProgramData") + L"\\Tarnwick\\Lumenor"),
      userFolder(Variable(L"APPDATA") + L"\\Tarnwick\\Lumenor") {
  RemoveAll();
  MakeRegistryKeys();
  SetDockValue(L"ShowWelcomePage", L"0");
  MakeFolders(programFolder + L"\\Dock");
  MakeFolders(LogFolder());
  CopyInto(Variable(L"LUMENOR_DOCK_EXE"), DockExe());
  CopyInto(Variable(L"LUMENOR_RECORDER_EXE"), Recorder());
  CopyInto(Variable(L"LUMENOR_RECORDER_EXE"), programFolder + L"\\Lumenor.exe");
  CopyFolder(Variable(L"LUMENOR_PRODUCT") + L"\\resources", ResourcesFolder());
  CopyFolder(Variable(L"LUMENOR_PRODUCT") + englishTexts, commonFolder + englishTexts);
  CopyInto(ResourcesFolder() + L"\\ResetImage.png", ResourcesFolder() + L"\\test.png");
  ::SetEnvironmentVariableW(recordVariable, (commonFolder + L"\\recorded.txt").c_str());
}

Installation::~Installation() { RemoveAll(); }

void Installation::RemoveAll() const {
  for (const auto &folder : {programFolder, commonFolder, userFolder, JumpListFolder()})
    tests::DeleteTree(folder);
  RemoveRegistryKeys();
}

void Installation::WriteStub(const std::wstring &locale, const std::wstring &document, int number,
                             const Entry &entry) const {
  WriteRawStub(locale, document, number, DocumentXml(document, {entry}));
}

void Installation::WriteRawStub(const std::wstring &locale, const std::wstring &document, int number,
                                const std::string &text) const {
  const std::wstring folder = commonFolder + L"\\LangRes\\" + locale;
  MakeFolders(folder);
  WriteBytes(folder + L"\\" + document + L"." + std::to_wstring(number) + L".dstb", text);
}

void Installation::WriteDocument(const std::wstring &name, const std::vector<Entry> &entries) const {
  MakeFolders(userFolder);
  WriteBytes(DocumentPath(name), DocumentXml(name, entries));
}

namespace {

/// The folder of texts that the dock looks into first.
std::wstring FirstTexts(const std::wstring &commonFolder) {
  return commonFolder + L"\\BaseContent\\LangRes\\LangRes_VRA\\enu_us";
}

} // namespace

void Installation::WriteSearchProviders(const std::vector<Entry> &providers) const {
  std::wstring xml = L"<?xml version=\"1.0\" encoding=\"utf-8\"?><SearchingProviders>";
  for (const Entry &provider : providers)
    xml += L"<Providers><Head>" + Escaped(provider.head) + L"</Head><ActionType>" + provider.actionType +
           L"</ActionType><ActionParams>" + Escaped(provider.actionParams) + L"</ActionParams><Image>" +
           Escaped(provider.image) + L"</Image></Providers>";
  WriteRawSearchProviders(Utf8(xml + L"</SearchingProviders>"));
}

void Installation::WriteRawSearchProviders(const std::string &text) const {
  MakeFolders(FirstTexts(commonFolder));
  WriteBytes(FirstTexts(commonFolder) + L"\\SearchProviders.xml", text);
}

void Installation::UseFactorySearchProviders() const {
  ::DeleteFileW((FirstTexts(commonFolder) + L"\\SearchProviders.xml").c_str());
}

void Installation::UseFactoryContent() const {
  const std::wstring content = Variable(L"LUMENOR_PRODUCT") + L"\\LangRes";
  for (const std::wstring &locale : ListFolder(content))
    CopyFolder(content + L"\\" + locale, commonFolder + L"\\LangRes\\" + locale);
}

std::wstring Installation::WriteAside(const std::wstring &fileName, const std::string &bytes) const {
  const std::wstring path = programFolder + L"\\" + fileName;
  WriteBytes(path, bytes);
  return path;
}

void Installation::InstallTour() const {
  MakeFolders(programFolder + L"\\LumenorVideo");
  CopyInto(Recorder(), programFolder + L"\\LumenorVideo\\doc.exe");
}

void Installation::OptIn(bool agreed) const {
  const std::string choice = agreed ? "1" : "0";
  SetTextValue(HKEY_LOCAL_MACHINE, collectorKey, L"RuqIniFile",
               WriteAside(L"collector.ini", "[Settings]\r\nTrack=" + choice + "\r\n"));
}

std::wstring Installation::InstallCollector() const {
  const std::wstring path = programFolder + L"\\TWRuq.exe";
  CopyInto(Recorder(), path);
  SetTextValue(HKEY_LOCAL_MACHINE, collectorKey, L"RuqPath", path);
  return path;
}

void Installation::WriteUsualStubs() const {
  for (int i = 0; i < 3; ++i) {
    Entry entry = RecorderEntry(L"Fixed " + std::to_wstring(i), L"fixed " + std::to_wstring(i), i);
    entry.toolTip = L"Tip " + std::to_wstring(i);
    WriteStub(L"xx_xx", mainDocument, i, entry);
  }
  for (int i = 0; i < 2; ++i)
    WriteStub(L"xx_xx", userDocument, i,
              RecorderEntry(L"User " + std::to_wstring(i), L"user " + std::to_wstring(i), i));
}

std::vector<std::string> Installation::LogLines() const {
  std::vector<std::string> lines;
  for (const std::wstring &name : ListFolder(LogFolder())) {
    if (!name.starts_with(L"RollingDock") || !name.ends_with(L".log"))
      continue;
    const std::string text = ReadBytes(LogFolder() + L"\\" + name);
    for (std::size_t begin = 0, end; (end = text.find("\r\n", begin)) != std::string::npos; begin = end + 2)
      lines.push_back(text.substr(begin, end - begin));
  }
  return lines;
}

bool Installation::Logged(const std::string &text) const {
  const std::vector<std::string> lines = LogLines();
  return std::any_of(lines.begin(), lines.end(),
                     [&](const std::string &line) { return line.find(text) != std::string::npos; });
}

int Installation::ForYouReadings() const {
  const std::vector<std::string> lines = LogLines();
  return static_cast<int>(std::count_if(lines.begin(), lines.end(), [](const std::string &line) {
    return line.find("Getting last modified time for ") != std::string::npos &&
           line.find("DockPopup.ForYou.xml") != std::string::npos;
  }));
}

std::vector<RecordedStart> Installation::RecordedStarts() const {
  return tests::ReadRecordedStarts(commonFolder + L"\\recorded.txt");
}

std::vector<std::wstring> Installation::RecordedCommandLines() const {
  std::vector<std::wstring> lines;
  for (const RecordedStart &start : RecordedStarts())
    lines.push_back(start.commandLine);
  return lines;
}

std::vector<std::wstring> Installation::WaitForCommandLines(std::size_t count) const {
  WaitFor([&] { return RecordedCommandLines().size() >= count; });
  return RecordedCommandLines();
}

std::string DocumentXml(const std::wstring &name, const std::vector<Entry> &entries) {
  std::wstring xml = L"<?xml version=\"1.0\" encoding=\"utf-8\" ?><UIRoot><" + name + L"><Elements>";
  for (const Entry &entry : entries)
    xml += ElementXml(entry);
  return Utf8(xml + L"</Elements></" + name + L"></UIRoot>");
}

int CountOf(const std::string &text, const std::string &needle) {
  int count = 0;
  for (std::size_t at = text.find(needle); at != std::string::npos; at = text.find(needle, at + needle.size()))
    ++count;
  return count;
}

std::optional<std::wstring> DockValue(const std::wstring &name) { return TextValue(dockKey, name.c_str()); }

void SetDockValue(const std::wstring &name, const std::wstring &text) {
  SetTextValue(HKEY_CURRENT_USER, dockKey, name, text);
}

void RemoveDockValue(const std::wstring &name) {
  ASSERT_EQ(ERROR_SUCCESS, ::RegDeleteKeyValueW(HKEY_CURRENT_USER, dockKey, name.c_str()));
}

std::optional<std::wstring> TrackingValue(const std::wstring &name) { return TextValue(trackingKey, name.c_str()); }

void SetTrackingValue(const std::wstring &name, const std::wstring &text) {
  SetTextValue(HKEY_CURRENT_USER, trackingKey, name, text);
}

void SetMachineValue(const std::wstring &name, const std::wstring &text) {
  SetTextValue(HKEY_LOCAL_MACHINE, machineKey, name, text);
}

std::optional<std::wstring> StartupValue() { return TextValue(startupKey, startupValue); }

} // namespace lumenor::e2e
