#include "fuzz/Targets.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <stdexcept>

#include "app/CommandLine.h"
#include "content/ActionDataProvider.h"
#include "content/DocumentFile.h"
#include "content/DocumentNames.h"
#include "content/Documents.h"
#include "content/IconCache.h"
#include "content/Stubs.h"
#include "content/TaskLink.h"
#include "content/UserDocument.h"
#include "dock/dragdrop/DataObject.h"
#include "dock/dragdrop/DroppedFile.h"
#include "dock/dragdrop/DropTarget.h"
#include "dock/Placement.h"
#include "fuzz/Inputs.h"
#include "support/ImportSlot.h"
#include "support/RenderSurface.h"
#include "support/Shortcut.h"
#include "support/TestFolders.h"
#include "system/Handles.h"
#include "system/HResultError.h"
#include "system/ImagePath.h"
#include "system/LanguageResources.h"
#include "system/Launch.h"
#include "system/Locale.h"
#include "system/Paths.h"
#include "system/Product.h"
#include "system/Registry.h"
#include "system/Text.h"
#include "toolkit/drawing/ProgramAppearance.h"
#include "toolkit/drawing/WICHelper.h"
#include "tracking/Collector.h"
#include "tracking/MachineValues.h"
#include "tracking/Payload.h"
#include "tracking/UsageTracker.h"

#include <shlobj.h>

extern "C" decltype(&::SHGetLocalizedName) __imp_SHGetLocalizedName;

namespace lumenor::fuzz {
namespace {

using tests::WriteBytes;

std::vector<std::string> Steps(const std::string &name) { return {"UIRoot", name, "Elements"}; }

std::string Narrow(const std::wstring &text) { return {text.begin(), text.end()}; }

void Demand(bool holds, const char *what) {
  if (!holds)
    throw std::runtime_error(what);
}

/// The platform's reader takes the white space at the ends of a text away, unless a comment or the like is beside it.
std::wstring Trimmed(const std::wstring &text) {
  constexpr wchar_t space[] = L" \t\r\n";
  const std::size_t begin = text.find_first_not_of(space);
  return begin == std::wstring::npos ? L"" : text.substr(begin, text.find_last_not_of(space) - begin + 1);
}

/// The first character that differs and those beside it, as numbers.
void DemandEqual(const std::wstring &before, const std::wstring &after) {
  if (before == after)
    return;
  const auto at = static_cast<std::size_t>(std::ranges::mismatch(before, after).in1 - before.begin());
  std::string message = "a save changed a text of " + std::to_string(before.size()) + " characters at " +
                        std::to_string(at) + " into one of " + std::to_string(after.size()) + ":";
  for (const std::wstring &text : {before, after}) {
    for (std::size_t i = at > 2 ? at - 2 : 0; i < std::min(text.size(), at + 4); ++i)
      message += " " + std::to_string(static_cast<int>(text[i]));
    message += ";";
  }
  throw std::runtime_error(message);
}

void MakeFolders(const std::wstring &path) { ::SHCreateDirectoryExW(nullptr, path.c_str(), nullptr); }

/// All files in `folder` of the product whose names match; read once.
std::vector<std::string> ShippedFiles(const std::wstring &folder, const std::wstring &pattern) {
  wchar_t product[MAX_PATH] = {};
  ::GetEnvironmentVariableW(L"LUMENOR_PRODUCT", product, MAX_PATH);
  const std::wstring path = product + (L"\\" + folder + L"\\");
  std::vector<std::string> files;
  WIN32_FIND_DATAW found = {};
  const FindHandle find(::FindFirstFileW((path + pattern).c_str(), &found));
  if (find)
    do
      files.push_back(tests::ReadBytes(path + found.cFileName));
    while (::FindNextFileW(find.Get(), &found));
  Demand(!files.empty(), "LUMENOR_PRODUCT doesn't name the product");
  return files;
}

/// Mostly built from the grammar, else a changed one of the `shipped` files.
std::string XmlInput(Random &random, const Grammar &grammar, const std::vector<std::string> &shipped) {
  return random.Once(4) ? Mutated(random, random.Of(shipped)) : AnyXml(random, grammar);
}

const std::vector<std::string> entryFields = {
    "Head", "ToolTip", "ActionType", "ActionParams", "Image", "ActionParamsBackup", "Position"};

// Documents.

std::string MakeDocument(Random &random) {
  static const auto shipped = ShippedFiles(L"LangRes\\xx_xx", L"*.dstb");
  static const Grammar grammar = {Steps(Narrow(userDocumentName)), "Element", entryFields, false};
  return XmlInput(random, grammar, shipped);
}

void DeleteCopies(const std::wstring &path) {
  WIN32_FIND_DATAW found = {};
  const FindHandle find(::FindFirstFileW((path + L".*").c_str(), &found));
  if (find)
    do
      ::DeleteFileW((path.substr(0, path.rfind(L'\\') + 1) + found.cFileName).c_str());
    while (::FindNextFileW(find.Get(), &found));
}

void TakeDocument(const std::string &bytes) {
  const std::wstring path = DocumentPath(userDocumentName);
  WriteBytes(path, bytes);
  UserDocument document;
  ElementList list = document.Load();
  if (list.empty()) {
    document.Save(list);
    const bool wasRead = ReadDocument(userDocumentName).state == DocumentState::Read;
    Demand(wasRead || tests::ReadBytes(path) == bytes, "a document that couldn't be read was replaced by an empty one");
  }
  Element added;
  added.Head = L"Added";
  list.push_back(added);
  document.Save(list);
  const DocumentReading reading = ReadDocument(userDocumentName);
  Demand(reading.state == DocumentState::Read, "a saved document can't be read");
  Demand(reading.elements.size() == list.size(), "entries were lost or added by a save");
  for (std::size_t i = 0; i < list.size(); ++i)
    for (const auto field :
         {&Element::Head, &Element::ToolTip, &Element::ActionType, &Element::ActionParams, &Element::Image})
      DemandEqual(Trimmed(list[i].*field), Trimmed(reading.elements[i].*field));
  DeleteCopies(path);
}

// Stubs with their conditions.

std::string MakeStub(Random &random) {
  static const auto shipped = ShippedFiles(L"LangRes\\deu_de", L"*.dstb");
  static const Grammar grammar = {Steps(Narrow(forYouDocumentName)), "Element", entryFields, true};
  return XmlInput(random, grammar, shipped);
}

void TakeStub(const std::string &bytes) {
  const std::wstring folder = ExpandPath(product::stubFolder) + L"\\xx_xx\\";
  MakeFolders(folder);
  MakeFolders(ExpandPath(product::userFolder));
  WriteBytes(folder + forYouDocumentName + L".7.dstb", bytes);
  try {
    RebuildDocument(forYouDocumentName);
  } catch (const HResultError &error) {
    if (error.Result() != E_INVALIDARG) // a registry path that can't be split, as the guide for authors says
      throw;
    return;
  }
  Demand(ReadDocument(forYouDocumentName).state == DocumentState::Read, "a rebuilt document can't be read");
}

// Lists.

std::string MakeList(Random &random) {
  static const auto shipped = ShippedFiles(L"profile", L"*.xml");
  static const Grammar grammar = {Steps(Narrow(forYouListName)), "Element", entryFields, false};
  return XmlInput(random, grammar, shipped);
}

void TakeList(const std::string &bytes) {
  WriteBytes(DocumentPath(forYouListName), bytes);
  ForYouProvider provider;
  Demand(provider.GetElements().size() <= maxProviderEntries, "more entries than a list has");
}

std::string MakeProviders(Random &random) {
  static const auto shipped = ShippedFiles(L"BaseContent\\LangRes\\LangRes_VRA\\en_xx", L"SearchProviders.xml");
  static const Grammar grammar = {
      {"SearchingProviders"}, "Providers", {"Head", "ActionType", "ActionParams", "Image"}, false};
  return XmlInput(random, grammar, shipped);
}

void TakeProviders(const std::string &bytes) {
  WriteBytes(ExpandPath(product::userFolder) + L"\\SearchProviders.xml", bytes);
  SearchProvider provider;
  Demand(provider.GetElements().size() <= maxProviderEntries, "more entries than a list has");
}

std::string MakeTexts(Random &random) {
  static const auto shipped = ShippedFiles(L"BaseContent\\LangRes\\LangRes_VRA\\en_xx", L"*DockViewWindow.xml");
  static const Grammar grammar = {
      Steps("Lumenor.MainFrame.Windows.DockViewWindow"), "Element", {"Head", "ToolTip"}, false};
  return XmlInput(random, grammar, shipped);
}

void TakeTexts(const std::string &bytes) {
  WriteBytes(ExpandPath(product::userFolder) + L"\\Lumenor.MainFrame.Windows.DockViewWindow.xml", bytes);
  LoadDockString(L"Button.Tooltip.Close");
  LoadDocumentString(L"Lumenor.MainFrame.Windows.DockViewWindow", L"Element/Head");
}

// Pictures.

template <PictureKind Kind> std::string MakePicture(Random &random) {
  static const auto shipped = ShippedFiles(L"resources", L"*.png");
  if (Kind == PictureKind::Png && random.Once(2))
    return Mutated(random, random.Of(shipped));
  const std::string picture = AnyPicture(random, Kind);
  return random.Once(4) ? Mutated(random, picture) : picture;
}

void TakePicture(const std::string &bytes) {
  static tests::RenderSurface surface(10, 10);
  const std::wstring path = ExpandPath(product::userFolder) + L"\\picture";
  WriteBytes(path, bytes);
  for (const bool asBitmap : {false, true}) {
    try {
      if (asBitmap)
        LoadHBitmapFromFile(path);
      else
        LoadBitmapFromFile(surface.Target().Get(), path, true);
    } catch (const HResultError &) { // the button then gets the default picture
    }
  }
}

// Shortcuts, and other dropped files.

std::string MakeShortcut(Random &random) {
  static const std::string saved = [] {
    const std::wstring path = ExpandPath(product::userFolder) + L"\\seed.lnk";
    tests::MakeShortcut(
        path, {.target = L"C:\\windows\\notepad.exe", .arguments = L"/a b", .iconFile = L"C:\\windows\\explorer.exe"});
    return tests::ReadBytes(path);
  }();
  return Mutated(random, saved);
}

/// All that the dock does with a file that a user has dropped: the button, its picture, the task of the jump list.
void TakeDroppedFile(const std::wstring &path) {
  MakeDroppedElement(path);
  try {
    ProgramDisplayName(path);
    ProgramImage(path);
  } catch (const HResultError &) { // the button then gets the default picture
  }
  Microsoft::WRL::ComPtr<IShellLinkW> link;
  CreateTaskLink(path, {}, {}, link, {});
  ::DeleteFileW(CachedIconPath(path).c_str()); // one that is there isn't made again
}

std::wstring DroppedPath(const std::wstring &extension) {
  return ExpandPath(product::userFolder) + L"\\dropped." + extension;
}

void TakeDroppedFile(const std::wstring &extension, const std::string &bytes) {
  const std::wstring path = DroppedPath(extension);
  WriteBytes(path, bytes);
  TakeDroppedFile(path);
}

void TakeShortcut(const std::string &bytes) { TakeDroppedFile(L"lnk", bytes); }

void TakeIconFile(const std::string &bytes) { TakeDroppedFile(L"ico", bytes); }

void TakeWebShortcut(const std::string &bytes) { TakeDroppedFile(L"url", bytes); }

/// The file also holds its own localized name, as one in the folder of installed programs may. A shortcut leads to it.
void TakeProgram(const std::string &bytes) {
  const tests::ImportSlot named(
      &__imp_SHGetLocalizedName, +[](PCWSTR path, PWSTR module, UINT size, int *id) STDAPICALLTYPE -> HRESULT {
        *id = 1;
        return ::lstrcpynW(module, path, static_cast<int>(size)) == nullptr ? E_FAIL : S_OK;
      });
  TakeDroppedFile(L"exe", bytes);
  tests::MakeShortcut(DroppedPath(L"lnk"), {.target = DroppedPath(L"exe"), .iconFile = DroppedPath(L"exe")});
  TakeDroppedFile(DroppedPath(L"lnk"));
}

std::wstring WideText(const std::string &bytes) {
  std::wstring text(bytes.size() / sizeof(wchar_t), L'\0');
  std::memcpy(text.data(), bytes.data(), text.size() * sizeof(wchar_t));
  return text;
}

std::string MakeDrop(Random &random) {
  DROPFILES head{.pFiles = sizeof(DROPFILES), .pt = {}, .fNC = FALSE, .fWide = !random.Once(4)};
  if (random.Once(8))
    head.pFiles = static_cast<DWORD>(random.Once(2) ? random.Below(200) : random.Below(0xFFFFFFFF));
  std::string bytes(reinterpret_cast<const char *>(&head), sizeof head);
  for (std::size_t files = random.Below(6); files > 0; --files) {
    const std::string path = AnyText(random);
    for (const char c : path)
      bytes += head.fWide ? std::string{c, '\0'} : std::string{c};
    bytes += std::string(head.fWide ? 2 : 1, '\0');
  }
  bytes += std::string(random.Below(3), '\0'); // the end, which some programs forget
  return random.Once(2) ? bytes : Mutated(random, bytes);
}

void TakeDrop(const std::string &bytes) {
  if (bytes.empty())
    return; // a block of nothing is none
  static const HWND window =
      ::CreateWindowExW(0, L"STATIC", nullptr, 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
  STGMEDIUM medium{};
  medium.tymed = TYMED_HGLOBAL;
  medium.hGlobal = ::GlobalAlloc(GMEM_MOVEABLE, bytes.size());
  std::memcpy(::GlobalLock(medium.hGlobal), bytes.data(), bytes.size());
  ::GlobalUnlock(medium.hGlobal);
  const auto data = MakeComObject<CDataObject>();
  const auto target = MakeComObject<CDropTarget>(window);
  FORMATETC format = fileListFormat;
  data->SetData(&format, &medium, TRUE);
  DWORD effect = DROPEFFECT_COPY;
  target->DragEnter(data.Get(), MK_LBUTTON, {}, &effect);
  target->Drop(data.Get(), 0, {}, &effect);
}

// Tracking.

std::string MakePayload(Random &random) {
  static const Grammar grammar = {{"payload"}, "element", {"attribute", "session-tracking-info"}, false};
  return AnyXml(random, grammar);
}

void TakePayload(const std::string &bytes) {
  MakeFolders(ExpandPath(product::payloadFolder));
  WriteBytes(PayloadPath(), bytes);
  std::optional<Payload> payload = Payload::Open();
  if (!payload) {
    Demand(tests::ReadBytes(PayloadPath()) == bytes, "a file that is no payload was changed");
    return;
  }
  payload->Append(TrackRecord());
  payload->InsertSessionInfo(L"a", {{L"b", L"c"}});
  payload->Save();
  Demand(Payload::Open().has_value(), "a saved payload can't be opened");
}

std::string MakeIniFile(Random &random) {
  return Mutated(random, random.Once(2) ? "[Settings]\r\nTrack=1\r\n"
                                        : "\r\nTrack=" + AnyText(random) + "\r\n" + AnyText(random));
}

void TakeIniFile(const std::string &bytes) {
  const std::wstring path = ExpandPath(product::userFolder) + L"\\any.ini";
  WriteBytes(path, bytes);
  SaysThatUserAgreed(path);
}

// Texts: command lines, addresses, names, paths.

std::string MakeText(Random &random) {
  std::string units;
  for (const char c : AnyText(random) + (random.Once(2) ? " " : "") + AnyText(random))
    units += {c, '\0'};
  return random.Once(2) ? units : Mutated(random, units);
}

void TakeText(const std::string &bytes) {
  const std::wstring text = WideText(bytes);
  SplitCommandLine(text);
  CheckCommandLine(text);
  FitsShell(text);
  ResolveImagePath(text);
  ParseTime(text);
  IsDocumentName(text);
  MakeDroppedElement(text.substr(0, MAX_PATH - 1));
  try {
    OpenRegistryKey(text, KEY_READ);
  } catch (const HResultError &error) {
    Demand(error.Result() == E_INVALIDARG, "another failure than that of a path that can't be split");
  }
  LoadDocument(text, true);
}

// Registry values. The first byte says which one it is, the second of which type.

std::string MakeValue(Random &random) {
  std::string units{static_cast<char>(random.Below(8)), static_cast<char>(random.Below(12))};
  for (const char c : AnyText(random))
    units += {c, '\0'};
  units += std::string(random.Below(4), '\0');
  return random.Once(2) ? units : units.substr(0, 2) + Mutated(random, units.substr(2));
}

void TakeValue(const std::string &bytes) {
  constexpr std::array<std::pair<const wchar_t *, const wchar_t *>, 8> values = {
      {{product::dockKey, L"DockPosition"},
       {product::dockKey, L"ShowWelcomePage"},
       {product::trackingKey, L"NextTransferTime"},
       {product::trackingKey, L"NextElementSeq"},
       {product::trackingKey, L"AppID"},
       {product::machineKey, L"pcbrand"},
       {product::machineKey, L"platform"},
       {product::collectorKey, L"RuqIniFile"}}};
  const auto &[key, name] = values[static_cast<unsigned char>(bytes[0]) % values.size()];
  RegistryKeyHolder holder;
  if (!OpenOrCreateRegistryPath(key, holder, KEY_ALL_ACCESS))
    return;
  ::RegSetValueExW(holder.key.Get(), name, 0, static_cast<unsigned char>(bytes[1]),
                   reinterpret_cast<const BYTE *>(bytes.data()) + 2, static_cast<DWORD>(bytes.size() - 2));
  GetDockPosition();
  PlatformCode();
  CollectorIniFile();
  ReadMachineValue(name);
  ReadRegistryString(holder.key.Get(), name);
  UsageTracker tracker;
  tracker.LoadAppId();
  tracker.ReadOptIn();
  tracker.InitSessionInfo();
  tracker.LoadNextTransferTime();
  ::RegDeleteValueW(holder.key.Get(), name);
}

} // namespace

const std::vector<Target> &Targets() {
  static const std::vector<Target> targets = {
      {"document", L"xml", MakeDocument, TakeDocument},
      {"stub", L"dstb", MakeStub, TakeStub},
      {"list", L"xml", MakeList, TakeList},
      {"providers", L"xml", MakeProviders, TakeProviders},
      {"texts", L"xml", MakeTexts, TakeTexts},
      {"png", L"png", MakePicture<PictureKind::Png>, TakePicture},
      {"bmp", L"bmp", MakePicture<PictureKind::Bmp>, TakePicture},
      {"icon", L"ico", MakePicture<PictureKind::Icon>, TakePicture},
      {"jpeg", L"jpg", MakePicture<PictureKind::Jpeg>, TakePicture},
      {"gif", L"gif", MakePicture<PictureKind::Gif>, TakePicture},
      {"shortcut", L"lnk", MakeShortcut, TakeShortcut},
      {"program", L"exe", AnyProgram, TakeProgram},
      {"web", L"url", AnyWebShortcut, TakeWebShortcut},
      {"iconfile", L"ico", MakePicture<PictureKind::Icon>, TakeIconFile},
      {"drop", L"drop", MakeDrop, TakeDrop},
      {"payload", L"xml", MakePayload, TakePayload},
      {"ini", L"ini", MakeIniFile, TakeIniFile},
      {"text", L"txt", MakeText, TakeText},
      {"value", L"reg", MakeValue, TakeValue},
  };
  return targets;
}

std::string MakeInput(std::uint64_t seed, std::uint64_t index) {
  Random random(seed * 1'000'003 + index);
  return Targets()[index % Targets().size()].make(random);
}

} // namespace lumenor::fuzz
