#pragma once
// The files that the providers read, in folders of the test's own.

#include <string>

#include <gmock/gmock.h>

#include "support/ComApartment.h"
#include "support/KeptRegistryKey.h"
#include "support/TestFolders.h"

namespace lumenor {

/// `count` nodes of this name, numbered from 1 in their heads.
inline std::string Numbered(const std::string &node, int count) {
  std::string nodes;
  for (int i = 1; i <= count; ++i)
    nodes += "<" + node + "><Head>" + std::to_string(i) + "</Head></" + node + ">";
  return nodes;
}

class ProviderData : public testing::Test {
protected:
  std::wstring ForYouPath() const {
    return folders.UserFolder() + L"\\Lumenor.MainFrame.Controls.DockPopup.ForYou.xml";
  }

  void WriteForYou(const std::string &elements) const {
    tests::WriteBytes(ForYouPath(),
                      "<?xml version=\"1.0\" encoding=\"utf-8\"?><UIRoot><Lumenor.MainFrame.Controls.DockPopup.ForYou>"
                      "<Elements>" +
                          elements + "</Elements></Lumenor.MainFrame.Controls.DockPopup.ForYou></UIRoot>");
  }

  /// Where the last but one look-up goes.
  std::wstring SearchPath() const {
    return folders.CommonFolder() + L"\\BaseContent\\LangRes\\LangRes_VRA\\en_xx\\SearchProviders.xml";
  }

  void WriteSearch(const std::string &providers) const {
    tests::WriteBytes(SearchPath(), "<SearchingProviders>" + providers + "</SearchingProviders>");
  }

  const tests::ComApartment com;
  const tests::TestFolders folders;
  const tests::KeptRegistryKey platform{HKEY_LOCAL_MACHINE, L"SOFTWARE\\Tarnwick\\System Properties"};
};

} // namespace lumenor
