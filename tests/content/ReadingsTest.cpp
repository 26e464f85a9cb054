// The dock's own reading of the samples in readings.txt, whose verdicts the test of the schemas shares, and of the
// examples of the guide to the content.

#include <algorithm>
#include <functional>
#include <map>
#include <sstream>

#include <gmock/gmock.h>

#include "content/ActionDataProvider.h"
#include "content/Documents.h"
#include "content/Stubs.h"
#include "support/ComApartment.h"
#include "support/KeptRegistryKey.h"
#include "support/TestFolders.h"
#include "system/HResultError.h"
#include "system/LanguageResources.h"

namespace lumenor {
namespace {

struct Sample {
  std::string title;
  std::map<std::string, std::string> fields;
  std::string file;

  std::string Field(const std::string &name) const {
    const auto found = fields.find(name);
    return found == fields.end() ? std::string() : found->second;
  }
  std::wstring Name() const { return tests::FromUtf8(Field("name")); }
};

bool BeginsWith(const std::string &text, const std::string &start) { return text.compare(0, start.size(), start) == 0; }

/// Whether the line is a field, which goes into the sample.
bool TakeField(Sample &sample, const std::string &line) {
  for (const char *name : {"kind", "name", "schema", "dock", "reads", "why"})
    if (const std::string start = std::string(name) + ":"; BeginsWith(line, start)) {
      sample.fields[name] = line.size() > start.size() ? line.substr(start.size() + 1) : std::string();
      return true;
    }
  return false;
}

/// The whole file of a sample that gives only its entries.
std::string Completed(const Sample &sample) {
  if (BeginsWith(sample.file, "<Providers"))
    return "<SearchingProviders>" + sample.file + "</SearchingProviders>";
  const std::string name = sample.Field("name");
  if (BeginsWith(sample.file, "<Element"))
    return "<UIRoot><" + name + "><Elements>" + sample.file + "</Elements></" + name + "></UIRoot>";
  return sample.file;
}

void Complete(Sample &sample) {
  if (sample.Field("name").empty())
    sample.fields["name"] =
        sample.Field("kind") == "for-you" ? "Lumenor.MainFrame.Controls.DockPopup.ForYou" : "My.Tools";
  sample.file = Completed(sample);
}

std::vector<Sample> ReadSamples() {
  std::vector<Sample> samples;
  std::istringstream lines(tests::ReadBytes(tests::FromUtf8(LUMENOR_READINGS)));
  bool inFields = false;
  for (std::string line; std::getline(lines, line);) {
    if (BeginsWith(line, "=== ")) {
      samples.push_back({line.substr(4), {}, {}});
      inFields = true;
    } else if (!samples.empty() && !(inFields && TakeField(samples.back(), line))) {
      inFields = false;
      samples.back().file += line + "\n";
    }
  }
  for (Sample &sample : samples)
    Complete(sample);
  return samples;
}

/// What the dock made of a file.
struct Reading {
  std::string verdict; // as readings.txt lists them; empty for something read, which `Judge` then judges
  std::vector<std::string> entries;
  bool isHidden = false;
  bool areActionsKnown = true;
};

std::string Joined(const std::vector<std::string> &parts, const std::string &between) {
  std::string text;
  for (const std::string &part : parts)
    text += (text.empty() ? "" : between) + part;
  return text;
}

void AddField(std::vector<std::string> &fields, const char *name, const std::wstring &text) {
  if (!text.empty())
    fields.push_back(name + ("=" + tests::Utf8(text)));
}

void AddNumber(std::vector<std::string> &fields, const char *name, std::int32_t number) {
  if (number != 0)
    fields.push_back(name + ("=" + std::to_string(number)));
}

std::string Described(const Condition &condition) {
  std::wstring text = condition.Type + L"," + condition.Logic + L"," + condition.Key;
  if (!condition.ValueName.empty())
    text += L"," + condition.ValueName + L"," + condition.ValueData + L"," + condition.ValueType;
  return "Condition=" + tests::Utf8(text);
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

Reading ReadingOf(const ElementList &elements, bool (*knows)(const std::wstring &)) {
  Reading reading;
  for (const Element &element : elements) {
    reading.entries.push_back(Described(element));
    reading.areActionsKnown = reading.areActionsKnown && knows(element.ActionType);
  }
  return reading;
}

/// Whether the file has a text or the value of an attribute that isn't part of what was read.
bool HoldsMore(const std::string &file, const std::string &described) {
  const XmlDocumentPtr document = LoadXmlString(tests::FromUtf8(file));
  if (document == nullptr)
    return true;
  for (const XmlNodePtr &node : SelectNodes(document, L"//text()|//@*[name()!='ID']")) {
    std::string text = tests::Utf8(NodeText(node));
    text.erase(0, text.find_first_not_of(" \n"));
    text.erase(text.find_last_not_of(" \n") + 1);
    if (text != "0" && described.find(text) == std::string::npos)
      return true;
  }
  return false;
}

std::string Judge(const Reading &reading, const std::string &file) {
  if (!reading.verdict.empty())
    return reading.verdict;
  if (reading.isHidden)
    return "hides";
  const std::string described = Joined(reading.entries, " / ");
  // Parameters are told apart by their names, which the reading doesn't hold.
  std::string known = described;
  for (const char *name : {"type", "Logic", "Key", "ValueName", "ValueData", "ValueType"})
    known += std::string("|") + name;
  return reading.areActionsKnown && !HoldsMore(file, known) ? "takes" : "drops";
}

/// The user is English in Germany. The search for texts ends in en_xx.
class Readings : public testing::Test {
protected:
  Readings() { geo.SetText(L"Nation", L"94"); }

  Reading ReadStub(const Sample &sample) const {
    const std::wstring path = StubFilePath(L"xx_xx", sample.Name() + L".1.dstb");
    tests::WriteBytes(path, sample.file);
    std::vector<Condition> conditions;
    Reading reading;
    try {
      const Element element = ReadStubFile(sample.Name(), path, conditions);
      reading = ReadingOf({element}, ButtonKnows);
      reading.entries = {Described(element, conditions)};
      if (reading.entries[0].empty())
        return {"nothing", {}};
      reading.isHidden = !EvaluateConditions(path, conditions);
    } catch (const InvalidDstbException &) {
      reading.verdict = "refuses";
    } catch (const HResultError &) {
      reading.verdict = "fails";
    }
    return reading;
  }

  Reading ReadTheDocument(const Sample &sample) const {
    tests::WriteBytes(DocumentPath(sample.Name()), sample.file);
    const DocumentReading read = ReadDocument(sample.Name());
    Reading reading = ReadingOf(read.elements, ButtonKnows);
    if (read.state != DocumentState::Read)
      reading.verdict = "refuses";
    return reading;
  }

  Reading ReadList(IActionDataProvider &provider, bool (*knows)(const std::wstring &)) const {
    Reading reading = ReadingOf(provider.GetElements(), knows);
    if (reading.entries.empty())
      reading.verdict = "nothing";
    return reading;
  }

  std::wstring TextFile(const std::wstring &name) const {
    return folders.CommonFolder() + L"\\BaseContent\\LangRes\\LangRes_VRA\\en_xx\\" + name + L".xml";
  }

  Reading ReadForYou(const Sample &sample) const {
    tests::WriteBytes(DocumentPath(sample.Name()), sample.file);
    ForYouProvider provider;
    return ReadList(provider, SuggestionKnows);
  }

  Reading ReadSearchProviders(const Sample &sample) const {
    tests::WriteBytes(TextFile(L"SearchProviders"), sample.file);
    SearchProvider provider;
    return ReadList(provider, SearchKnows);
  }

  Reading ReadTexts(const Sample &sample) const {
    tests::WriteBytes(TextFile(sample.Name()), sample.file);
    std::vector<std::string> texts;
    for (const wchar_t *id : {L"Button.Tooltip.Close", L"SearchBox.ButtonToolTip", L"TextBlock.Feature4b"})
      AddField(texts, tests::Utf8(id).c_str(), LoadStringById(sample.Name(), id));
    if (!texts.empty())
      return {{}, {Joined(texts, "|")}};
    AddField(texts, "Head", LoadDocumentString(sample.Name(), L"Element/Head"));
    AddField(texts, "ToolTip", LoadDocumentString(sample.Name(), L"Element/ToolTip"));
    return {{}, {Joined(texts, "|")}};
  }

  Reading Read(const Sample &sample) const {
    const std::map<std::string, std::function<Reading()>> readers = {
        {"stub", [&] { return ReadStub(sample); }},
        {"document", [&] { return ReadTheDocument(sample); }},
        {"for-you", [&] { return ReadForYou(sample); }},
        {"search-providers", [&] { return ReadSearchProviders(sample); }},
        {"texts", [&] { return ReadTexts(sample); }},
    };
    return readers.at(sample.Field("kind"))();
  }

  const tests::ComApartment com;
  const tests::TestFolders folders;
  const tests::KeptRegistryKey geo{HKEY_CURRENT_USER, L"Control Panel\\International\\Geo"};
  const tests::KeptRegistryKey platform{HKEY_LOCAL_MACHINE, L"SOFTWARE\\Tarnwick\\System Properties"};
};

TEST_F(Readings, AreThoseThatTheSamplesTell) {
  const std::vector<Sample> samples = ReadSamples();
  ASSERT_GT(samples.size(), 50U) << "where the samples are looked for: " << LUMENOR_READINGS;
  for (const Sample &sample : samples) {
    const Reading reading = Read(sample);
    EXPECT_EQ(sample.Field("dock"), Judge(reading, sample.file)) << sample.title;
    EXPECT_EQ(sample.Field("reads"), Joined(reading.entries, " / ")) << sample.title;
  }
}

/// The entries that the guide's stubs make of a document; conditions on this machine leave out some of them.
std::vector<std::wstring> HeadsOf(const ElementList &list) {
  std::vector<std::wstring> heads;
  for (const Element &element : list)
    heads.push_back(element.Head);
  return heads;
}

TEST_F(Readings, TakeTheExamplesOfTheGuide) {
  const std::wstring examples = tests::FromUtf8(LUMENOR_EXAMPLES);
  for (const std::wstring &file : tests::ListFolder(examples + L"\\LangRes\\xx_xx"))
    tests::WriteBytes(StubFilePath(L"xx_xx", file), tests::ReadBytes(examples + L"\\LangRes\\xx_xx\\" + file));
  EXPECT_THAT(HeadsOf(LoadDocument(L"Lumenor.MainFrame.Windows.DockViewWindow.Main", false)),
              testing::ElementsAre(L"My tools"));
  // The test platform is a Windows 7 without calc.exe, and with a key of policies only in some prefixes.
  EXPECT_THAT(HeadsOf(LoadDocument(L"My.Tools", false)),
              testing::IsSupersetOf({L"Notepad", L"Calculator", L"Mail", L"Control panel"}));
  EXPECT_THAT(HeadsOf(LoadDocument(L"My.Tools", false)), testing::Not(testing::Contains(L"Settings")));
  const ElementList icons = LoadDocument(L"Lumenor.MainFrame.Controls.JumpList.Main", false);
  ASSERT_EQ(1U, icons.size());
  EXPECT_EQ(L"resources\\notes.ico", icons[0].Image);
}

TEST_F(Readings, TakeTheOtherExamplesOfTheGuide) {
  const std::wstring examples = tests::FromUtf8(LUMENOR_EXAMPLES);
  const std::wstring user = L"Lumenor.MainFrame.Windows.DockViewWindow.User";
  tests::WriteBytes(DocumentPath(user), tests::ReadBytes(examples + L"\\documents\\" + user + L".xml"));
  EXPECT_THAT(HeadsOf(ReadDocument(user).elements), testing::ElementsAre(L"Notepad"));
  const std::wstring list = L"Lumenor.MainFrame.Controls.DockPopup.ForYou";
  tests::WriteBytes(DocumentPath(list), tests::ReadBytes(examples + L"\\profile\\" + list + L".xml"));
  ForYouProvider forYou;
  EXPECT_THAT(HeadsOf(forYou.GetElements()), testing::ElementsAre(L"Read, listen and watch"));
  const std::wstring texts = examples + L"\\BaseContent\\LangRes\\LangRes_VRA\\en_xx";
  for (const std::wstring &file : tests::ListFolder(texts))
    tests::WriteBytes(TextFile(file.substr(0, file.size() - 4)), tests::ReadBytes(texts + L"\\" + file));
  SearchProvider providers;
  EXPECT_THAT(HeadsOf(providers.GetElements()), testing::ElementsAre(L"Wikipedia", L"Help and support"));
  EXPECT_EQ(L"Close", LoadDockString(L"Button.Tooltip.Close"));
  EXPECT_EQ(L"For You", LoadDocumentString(L"Lumenor.MainFrame.Windows.DockViewWindow.ForYou", L"Element/Head"));
}

} // namespace
} // namespace lumenor
