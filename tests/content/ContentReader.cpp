#include "content/ContentReader.h"

#include <algorithm>
#include <utility>

#include "content/ActionDataProvider.h"
#include "content/DocumentFile.h"
#include "content/Stubs.h"
#include "system/HResultError.h"
#include "system/LanguageResources.h"
#include "system/Xml.h"

namespace lumenor::tests {

/// What was read, ahead of the judgement on it.
struct ContentReader::Outcome {
  std::string verdict; // empty for something that is still to be judged
  std::vector<std::string> entries;
  bool isHidden = false;
  bool areActionsKnown = true;
};

namespace {

std::string Joined(const std::vector<std::string> &parts, const std::string &between) {
  std::string text;
  for (const std::string &part : parts)
    text += (text.empty() ? "" : between) + part;
  return text;
}

void AddField(std::vector<std::string> &fields, const char *name, const std::wstring &text) {
  if (!text.empty())
    fields.push_back(name + ("=" + Utf8(text)));
}

void AddNumber(std::vector<std::string> &fields, const char *name, std::int32_t number) {
  if (number != 0)
    fields.push_back(name + ("=" + std::to_string(number)));
}

std::string Described(const Condition &condition) {
  std::wstring text = condition.Type + L"," + condition.Logic + L"," + condition.Key;
  if (!condition.ValueName.empty())
    text += L"," + condition.ValueName + L"," + condition.ValueData + L"," + condition.ValueType;
  return "Condition=" + Utf8(text);
}

std::string Described(const Element &element, const std::vector<Condition> &conditions = {}) {
  std::vector<std::string> fields;
  AddField(fields, "Head", element.Head);
  AddNumber(fields, "HeadMaxLength", element.HeadMaxLength);
  AddField(fields, "ToolTip", element.ToolTip);
  AddNumber(fields, "ToolTipMaxLength", element.ToolTipMaxLength);
  AddField(fields, "ActionType", element.ActionType);
  AddField(fields, "ActionParams", element.ActionParams);
  AddField(fields, "ActionParamsBackup", element.ActionParamsBackup);
  AddField(fields, "Image", element.Image);
  AddNumber(fields, "Position", static_cast<std::int32_t>(element.Position));
  for (const Condition &condition : conditions)
    fields.push_back(Described(condition));
  return Joined(fields, "|");
}

bool IsOneOf(const std::wstring &word, std::initializer_list<const wchar_t *> words) {
  return std::any_of(words.begin(), words.end(), [&](const wchar_t *known) { return word == known; });
}

bool ButtonKnows(const std::wstring &type) {
  return IsOneOf(type, {L"", urlAction, programAction, categoryAction, pillarAction, flyoutAction});
}

bool SuggestionKnows(const std::wstring &type) {
  return IsOneOf(type, {urlAction, programAction, categoryAction, pillarAction}) || type.empty();
}

bool SearchKnows(const std::wstring &type) { return IsOneOf(type, {urlAction, helpSearchAction}); }

/// The text without blanks around it; a number without what may stand ahead of its first digit.
std::string Plain(std::string text) {
  text.erase(0, text.find_first_not_of(" \r\n\t"));
  text.erase(text.find_last_not_of(" \r\n\t") + 1);
  const std::size_t digits = text.find_first_not_of("+-");
  if (digits > 1 || digits == std::string::npos || text.find_first_not_of("0123456789", digits) != std::string::npos)
    return text;
  std::string number = text.substr(std::min(text.find_first_not_of('0', digits), text.size() - 1));
  return text[0] == '-' && number != "0" ? "-" + number : number;
}

/// Whether the text is a value among the fields that `Described` lists.
bool IsValue(const std::string &text, const std::string &described) {
  for (std::size_t at = described.find(text); at != std::string::npos; at = described.find(text, at + 1)) {
    const std::size_t end = at + text.size();
    const bool begins = at == 0 || std::string("=,|").find(described[at - 1]) != std::string::npos;
    const bool ends = end == described.size() || described[end] == '|' || described[end] == ',';
    if (begins && (ends || described.compare(end, 3, " / ") == 0))
      return true;
  }
  return false;
}

/// Whether the file has a text or the value of an attribute that isn't a value of what was read.
bool HoldsMore(const std::wstring &path, const std::string &described) {
  const XmlDocumentPtr document = LoadXmlFile(path);
  if (document == nullptr)
    return true;
  // An element with a text counts as a whole, with the elements inside.
  const std::wstring texts = L"//*[text()[normalize-space()] and not(ancestor::*[text()[normalize-space()]])]";
  for (const XmlNodePtr &node : SelectNodes(document, texts + L"|//@*[name()!='ID']")) {
    const std::string text = Plain(Utf8(NodeText(node)));
    if (!text.empty() && text != "0" && !IsValue(text, described))
      return true;
  }
  return false;
}

} // namespace

ContentReader::ContentReader(std::vector<std::wstring> ids) : textIds(std::move(ids)) { geo.SetText(L"Nation", L"94"); }

std::wstring ContentReader::TextFile(const std::wstring &name) const {
  return folders.CommonFolder() + L"\\BaseContent\\LangRes\\LangRes_VRA\\en_xx\\" + name + L".xml";
}

std::wstring ContentReader::PathOf(const ContentFile &file) const {
  if (file.kind == "stub")
    return StubFilePath(L"xx_xx", file.name + L".1.dstb");
  if (file.kind == "texts")
    return TextFile(file.name);
  return file.kind == "search-providers" ? TextFile(L"SearchProviders") : DocumentPath(file.name);
}

ContentReading ContentReader::Read(const ContentFile &file) const {
  const std::wstring path = PathOf(file);
  WriteBytes(path, file.bytes);
  const Outcome outcome = ReadAs(file, path);
  const std::string entries = Joined(outcome.entries, " / ");
  if (!outcome.verdict.empty())
    return {outcome.verdict, entries};
  if (outcome.isHidden)
    return {"hides", entries};
  // Parameters are told apart by their names, which the reading doesn't hold.
  std::string known = entries;
  for (const char *name : {"type", "Logic", "Key", "ValueName", "ValueData", "ValueType"})
    known += std::string("|") + name;
  return {outcome.areActionsKnown && !HoldsMore(path, known) ? "takes" : "drops", entries};
}

ContentReader::Outcome ContentReader::ReadStub(const std::wstring &name, const std::wstring &path) const {
  Outcome outcome;
  try {
    std::vector<Condition> conditions;
    const Element element = ReadStubFile(name, path, conditions);
    outcome.entries = {Described(element, conditions)};
    outcome.areActionsKnown = ButtonKnows(element.ActionType);
    if (outcome.entries[0].empty())
      return {"nothing", {}};
    outcome.isHidden = !EvaluateConditions(path, conditions);
  } catch (const InvalidDstbException &) {
    outcome.verdict = "refuses";
  } catch (const HResultError &) {
    outcome.verdict = "fails";
  }
  return outcome;
}

ContentReader::Outcome ContentReader::ReadTexts(const std::wstring &name) const {
  std::vector<std::string> texts;
  for (const std::wstring &id : textIds)
    AddField(texts, Utf8(id).c_str(), LoadStringById(name, id));
  for (const wchar_t *child : {L"Head", L"ToolTip"})
    if (name == L"Lumenor.MainFrame.Windows.DockViewWindow.ForYou")
      AddField(texts, Utf8(child).c_str(), LoadDocumentString(name, std::wstring(L"Element/") + child));
  return {{}, {Joined(texts, "|")}};
}

ContentReader::Outcome ContentReader::ReadAs(const ContentFile &file, const std::wstring &path) const {
  const auto outcomeOf = [](const ElementList &elements, bool (*knows)(const std::wstring &)) {
    Outcome outcome;
    for (const Element &element : elements) {
      outcome.entries.push_back(Described(element));
      outcome.areActionsKnown = outcome.areActionsKnown && knows(element.ActionType);
    }
    return outcome;
  };
  const auto listOf = [&](IActionDataProvider &provider, bool (*knows)(const std::wstring &)) {
    Outcome outcome = outcomeOf(provider.GetElements(), knows);
    if (outcome.entries.empty())
      outcome.verdict = "nothing";
    return outcome;
  };
  if (file.kind == "stub")
    return ReadStub(file.name, path);
  if (file.kind == "texts")
    return ReadTexts(file.name);
  if (file.kind == "for-you") {
    ForYouProvider provider;
    return listOf(provider, SuggestionKnows);
  }
  if (file.kind == "search-providers") {
    SearchProvider provider;
    return listOf(provider, SearchKnows);
  }
  const DocumentReading read = ReadDocument(file.name);
  Outcome outcome = outcomeOf(read.elements, ButtonKnows);
  if (read.state != DocumentState::Read)
    outcome.verdict = "refuses";
  return outcome;
}

} // namespace lumenor::tests
