// The dock's own reading of files that tests/script/generated-readings-test has made. Without them there is nothing to
// read.

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <utility>

#include <gtest/gtest.h>

#include "content/ContentReader.h"

namespace lumenor {
namespace {

std::vector<std::string> Split(const std::string &text, char between) {
  std::vector<std::string> parts;
  std::istringstream stream(text);
  for (std::string part; std::getline(stream, part, between);)
    parts.push_back(part);
  return parts;
}

/// The text on one line without tabs.
std::string OnALine(std::string text) {
  for (char &c : text)
    if (c == '\n' || c == '\r' || c == '\t')
      c = ' ';
  return text;
}

std::vector<std::wstring> TextIds(const std::string &folder) {
  std::vector<std::wstring> ids;
  for (const std::string &id : Split(tests::ReadBytes(tests::FromUtf8(folder + "\\ids")), '\n'))
    ids.push_back(tests::FromUtf8(id));
  return ids;
}

/// The folder has a list, "files", with a line for each file (its name, its kind and its document, with tabs between
/// them), the files, and the IDs of the texts to ask for. Lines with the verdicts and the entries go to "readings".
class GeneratedReadings : public testing::Test {
public:
  explicit GeneratedReadings(std::string folder) : folder(std::move(folder)) {}

private:
  void TestBody() override;

  std::string folder;
};

void GeneratedReadings::TestBody() {
  const tests::ContentReader reader(TextIds(folder));
  std::ofstream readings(folder + "\\readings", std::ios::binary);
  for (const std::string &line : Split(tests::ReadBytes(tests::FromUtf8(folder + "\\files")), '\n')) {
    const std::vector<std::string> parts = Split(line, '\t');
    ASSERT_EQ(3U, parts.size()) << line;
    const std::string bytes = tests::ReadBytes(tests::FromUtf8(folder + "\\" + parts[0]));
    const tests::ContentReading reading = reader.Read({parts[1], tests::FromUtf8(parts[2]), bytes});
    readings << parts[0] << '\t' << reading.verdict << '\t' << OnALine(reading.entries) << '\n';
  }
  EXPECT_TRUE(readings.flush().good());
}

/// Only where the script has made a folder is there a test.
[[maybe_unused]] const testing::TestInfo *const registered = [] {
  const char *const folder = std::getenv("LUMENOR_GENERATED");
  return folder == nullptr
             ? nullptr
             : testing::RegisterTest(
                   "GeneratedReadings", "AreWrittenForTheScriptThatComparesThem", nullptr, nullptr, __FILE__, __LINE__,
                   [folder = std::string(folder)]() -> testing::Test * { return new GeneratedReadings(folder); });
}();

} // namespace
} // namespace lumenor
