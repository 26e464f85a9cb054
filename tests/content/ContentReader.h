#pragma once
// What the dock makes of a file of content, in a word and in the entries that it reads.

#include <string>
#include <vector>

#include "support/ComApartment.h"
#include "support/KeptRegistryKey.h"
#include "support/TestFolders.h"

namespace lumenor::tests {

struct ContentFile {
  std::string kind;  // stub, document, for-you, search-providers or texts
  std::wstring name; // the document's
  std::string bytes;
};

struct ContentReading {
  std::string verdict; // readings.txt lists them
  std::string entries; // their fields with "|" between them, and " / " between two; empty fields are left out
};

/// Reads files in folders of a test. The user is English in Germany; the search for texts ends in en_xx.
class ContentReader {
public:
  /// `textIds` are the texts that are asked for.
  explicit ContentReader(std::vector<std::wstring> textIds);

  /// Where a file of texts is looked for.
  std::wstring TextFile(const std::wstring &name) const;

  ContentReading Read(const ContentFile &file) const;

private:
  struct Outcome;

  /// Where the dock looks for the file.
  std::wstring PathOf(const ContentFile &file) const;
  Outcome ReadStub(const std::wstring &name, const std::wstring &path) const;
  Outcome ReadTexts(const std::wstring &name) const;
  Outcome ReadAs(const ContentFile &file, const std::wstring &path) const;

  const ComApartment com;
  const TestFolders folders;
  const KeptRegistryKey geo{HKEY_CURRENT_USER, L"Control Panel\\International\\Geo"};
  const KeptRegistryKey platform{HKEY_LOCAL_MACHINE, L"SOFTWARE\\Tarnwick\\System Properties"};
  const std::vector<std::wstring> textIds;
};

} // namespace lumenor::tests
