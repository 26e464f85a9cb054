#include "tracking/Tracking.h"

#include "system/Xml.h"

namespace lumenor {

namespace {

std::wstring Wide(const std::string &utf8) {
  const int length = static_cast<int>(utf8.size());
  std::wstring text(utf8.size(), L'\0');
  const int size = ::MultiByteToWideChar(CP_UTF8, 0, utf8.data(), length, text.data(), length);
  text.resize(static_cast<std::size_t>(size));
  return text;
}

} // namespace

Element Entry(const std::wstring &head, const std::wstring &actionType, const std::wstring &actionParams) {
  Element element;
  element.Head = head;
  element.ToolTip = L"Tip of " + head;
  element.ActionType = actionType;
  element.ActionParams = actionParams;
  return element;
}

std::vector<std::string> Summary(const std::vector<TrackRecord> &records) {
  std::vector<std::string> lines;
  for (const TrackRecord &record : records)
    lines.push_back(tests::Utf8(record.Name) + " " + std::to_string(record.SequenceId));
  return lines;
}

std::vector<std::string> Elements(const std::string &payload) {
  const XmlDocumentPtr document = LoadXmlString(Wide(payload.substr(payload.find("<payload"))));
  std::vector<std::string> lines;
  for (const XmlNodePtr &element : SelectNodes(document, L"/payload/element"))
    lines.push_back(tests::Utf8(NodeAttribute(element, L"name") + L" " + NodeAttribute(element, L"sequence-id")));
  return lines;
}

std::size_t Occurrences(const std::string &text, const std::string &part) {
  std::size_t count = 0;
  for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + part.size()))
    ++count;
  return count;
}

Tracking::Tracking() {
  for (const tests::KeptRegistryKey *key : {&user, &settings32, &machine, &machine32, &collector, &collector32})
    key->Delete();
  tests::MakeFolders(folders.UserFolder());
}

void Tracking::WriteIni(const std::string &content) const {
  tests::WriteBytes(IniFile(), content);
  collector.SetText(L"RuqIniFile", IniFile());
}

void Tracking::Start() {
  tracker.LoadAppId();
  tracker.ReadOptIn();
  if (!tracker.IsEnabled())
    return;
  tracker.InitSessionInfo();
  tracker.StartSession();
  tracker.LoadNextTransferTime();
}

void Tracking::AddButtons(int count, const std::wstring &name) {
  for (int i = 1; i <= count; ++i)
    tracker.TrackIconAdd(Entry(name + std::to_wstring(i)));
}

std::string Tracking::ClosedPayload() const {
  std::vector<std::wstring> closed;
  for (const std::wstring &name : tests::ListFolder(PayloadFolder()))
    if (name.ends_with(L".ruq"))
      closed.push_back(name);
  return closed.size() == 1 ? tests::ReadBytes(PayloadFolder() + L"\\" + closed[0]) : std::string();
}

std::wstring Tracking::NextTransferTime() {
  tracker.SaveSettings();
  return settings32.Text(L"NextTransferTime").value_or(L"none");
}

} // namespace lumenor
