// The dock's own reading of the samples in readings.txt, whose verdicts the test of the schemas shares, and of the
// examples of the guide to the content.

#include <map>
#include <sstream>

#include <gmock/gmock.h>

#include "content/ActionDataProvider.h"
#include "content/ContentReader.h"
#include "content/DocumentFile.h"
#include "content/Documents.h"
#include "content/Stubs.h"
#include "support/TestFolders.h"
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

class Readings : public testing::Test {
protected:
  const tests::ContentReader reader{{L"Button.Tooltip.Close", L"SearchBox.ButtonToolTip", L"TextBlock.Feature4b"}};
};

TEST_F(Readings, AreThoseThatTheSamplesTell) {
  const std::vector<Sample> samples = ReadSamples();
  ASSERT_GT(samples.size(), 50U) << "where the samples are looked for: " << LUMENOR_READINGS;
  for (const Sample &sample : samples) {
    const tests::ContentReading reading = reader.Read({sample.Field("kind"), sample.Name(), sample.file});
    EXPECT_EQ(sample.Field("dock"), reading.verdict) << sample.title;
    EXPECT_EQ(sample.Field("reads"), reading.entries) << sample.title;
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
              testing::IsSupersetOf({L"Notepad", L"Calculator", L"Mail", L"Control Panel"}));
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
    tests::WriteBytes(reader.TextFile(file.substr(0, file.size() - 4)), tests::ReadBytes(texts + L"\\" + file));
  SearchProvider providers;
  EXPECT_THAT(HeadsOf(providers.GetElements()), testing::ElementsAre(L"Wikipedia", L"Help and support"));
  EXPECT_EQ(L"Close", LoadDockString(L"Button.Tooltip.Close"));
  EXPECT_EQ(L"For You", LoadDocumentString(L"Lumenor.MainFrame.Windows.DockViewWindow.ForYou", L"Element/Head"));
}

} // namespace
} // namespace lumenor
