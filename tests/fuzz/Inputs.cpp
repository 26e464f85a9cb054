#include "fuzz/Inputs.h"

#include <algorithm>
#include <array>
#include <utility>

#include "support/ProgramBytes.h"

namespace lumenor::fuzz {
namespace {

using namespace std::literals;

/// An element of a document that is being made.
struct Node {
  std::string name;
  std::string text;
  std::vector<std::pair<std::string, std::string>> attributes;
  std::vector<Node> children;
};

const std::array usualTexts = {"Notepad"s,
                               "exe"s,
                               "url"s,
                               "xml"s,
                               "helpSearch"s,
                               "pillar"s,
                               "category"s,
                               "http://search.invalid/?q="s,
                               "%windir%\\notepad.exe"s,
                               "\"%ProgramFiles%\\a b\\c.exe\" /d e"s,
                               "..\\resources\\documents.png"s,
                               "Lumenor.MainFrame.Controls.DockPopup.Places"s,
                               "File"s,
                               "Registry"s,
                               "FileExist"s,
                               "FileNotExist"s,
                               "KeyExist"s,
                               "KeyNotExist"s,
                               "CheckValue"s,
                               "HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft"s,
                               "HKEY_CURRENT_USER\\Software"s,
                               "REG_SZ"s,
                               "REG_DWORD"s,
                               "Logic"s,
                               "Key"s,
                               "ValueName"s,
                               "ValueData"s,
                               "ValueType"s};

const std::array oddTexts = {""s,
                             " "s,
                             "0"s,
                             "-1"s,
                             "2147483647"s,
                             "2147483648"s,
                             "4294967296"s,
                             "99999999999999999999"s,
                             "0x10"s,
                             "1e9"s,
                             " 5 "s,
                             "7x"s,
                             "%"s,
                             "%%"s,
                             "%nothing%"s,
                             "%s%n%S"s,
                             "%appdata%%appdata%"s,
                             "\\"s,
                             "/"s,
                             "C:"s,
                             "C:\\"s,
                             "C:\\*"s,
                             "..\\..\\..\\"s,
                             "\\\\server\\share"s,
                             "\\\\?\\C:\\"s,
                             "\\\\.\\pipe\\x"s,
                             "con"s,
                             "nul.txt"s,
                             "a:b:c"s,
                             "*?<>|"s,
                             "\""s,
                             "\"\""s,
                             "'"s,
                             "a'b\"c"s,
                             "]]>"s,
                             "&amp;"s,
                             "HKEY_NONE\\x"s,
                             "HKEY_LOCAL_MACHINE"s,
                             "HKEY_LOCAL_MACHINE\\"s,
                             "\\x"s,
                             "\t\r\n"s,
                             "\xE2\x80\xAE"
                             "abc"s,
                             "\xF0\x9F\x98\x80"s,
                             "\xEF\xBF\xBD"s,
                             "e\xCC\x81\xCC\x81\xCC\x81"s,
                             "\xD9\xA3"s,
                             "shell:::{00000000-0000-0000-0000-000000000000}"s,
                             "file:///C:/"s,
                             "My Tools"s,
                             "a\"b/Element"s};

std::string Repeated(std::string_view text, std::size_t count) {
  std::string repeated;
  for (std::size_t i = 0; i < count; ++i)
    repeated += text;
  return repeated;
}

std::string LongText(Random &random) {
  constexpr std::array<std::size_t, 6> lengths = {255, 260, 300, 1'000, 2'084, 9'000};
  return random.Once(10) ? std::string(70'000, 'm')
                         : Repeated(random.Once(2) ? "m" : random.Of(oddTexts), random.Of(lengths));
}

void AppendEscaped(Random &random, std::string &xml, const std::string &text) {
  for (const char c : text) {
    if (c == '&' || c == '<' || c == '"' || (c == '>' && random.Once(2)))
      xml += c == '&' ? "&amp;" : c == '<' ? "&lt;" : c == '"' ? "&quot;" : "&gt;";
    else if ((c == '\t' || c == '\r' || c == '\n') && random.Once(2))
      xml += "&#" + std::to_string(static_cast<int>(c)) + ";";
    else
      xml += c;
  }
}

void AppendText(Random &random, std::string &xml, const std::string &text) {
  if (random.Once(40) && text.find("]]>") == std::string::npos)
    xml += "<![CDATA[" + text + "]]>";
  else
    AppendEscaped(random, xml, text);
  if (random.Once(100))
    xml += random.Once(2) ? "<!-- " + random.Of(usualTexts) + " -->"
                          : "<?"
                            "odd thing?>";
}

void AppendNode(Random &random, std::string &xml, const Node &node) {
  xml += "<" + node.name;
  for (const auto &[name, value] : node.attributes) {
    xml += " " + name + "=\"";
    AppendEscaped(random, xml, value);
    xml += "\"";
  }
  if (node.text.empty() && node.children.empty() && random.Once(2)) {
    xml += "/>";
    return;
  }
  xml += ">";
  AppendText(random, xml, node.text);
  for (const Node &child : node.children)
    AppendNode(random, xml, child);
  xml += "</" + node.name + ">";
}

/// Any element of the tree below `root`, or itself.
Node &AnyNode(Random &random, Node &root) {
  Node *node = &root;
  while (!node->children.empty() && !random.Once(4))
    node = &node->children[random.Below(node->children.size())];
  return *node;
}

Node Condition(Random &random) {
  Node condition{
      .name = "Condition", .text = {}, .attributes = {{"type", random.Once(2) ? "File" : "Registry"}}, .children = {}};
  for (const char *name : {"Logic", "Key", "ValueName", "ValueData", "ValueType"})
    if (!random.Once(3))
      condition.children.push_back({"param", AnyText(random), {{"name", name}}, {}});
  return condition;
}

Node Entry(Random &random, const Grammar &grammar) {
  Node entry{.name = grammar.entry, .text = {}, .attributes = {}, .children = {}};
  for (const std::string &field : grammar.fields)
    entry.children.push_back(
        {field, field == "Position" && !random.Once(4) ? std::to_string(random.Below(300)) : AnyText(random), {}, {}});
  while (grammar.hasConditions && !random.Once(2))
    entry.children.push_back(Condition(random));
  return entry;
}

Node Nested(std::string name, std::size_t depth) {
  Node node{.name = name, .text = "x", .attributes = {}, .children = {}};
  for (std::size_t i = 0; i < depth; ++i) {
    Node outer{.name = name, .text = {}, .attributes = {}, .children = {}};
    outer.children.push_back(std::move(node));
    node = std::move(outer);
  }
  return node;
}

void MakeFault(Random &random, Node &root, const Grammar &grammar) {
  Node &node = AnyNode(random, root);
  const Node copy = node;
  switch (random.Below(9)) {
  case 0:
    node.name = random.Of(grammar.fields);
    break;
  case 1:
    node.children.clear();
    break;
  case 2:
    node.children.push_back(copy);
    break;
  case 3:
    node.text = AnyText(random);
    break;
  case 4:
    node.attributes.emplace_back("a" + std::to_string(random.Below(1000)), AnyText(random));
    break;
  case 5:
    std::reverse(node.children.begin(), node.children.end());
    break;
  case 6:
    node.children.push_back(Nested(node.name, random.Below(200)));
    break;
  case 7:
    node.attributes = {{"MaxLength", AnyText(random)}};
    break;
  default:
    if (!node.children.empty())
      node.children.insert(node.children.end(), random.Below(60), Node(node.children[0]));
    break;
  }
}

std::string Utf16(std::string_view utf8, bool highFirst) {
  std::string units;
  for (const char c : utf8) // other characters become odd ones, which is as good
    units += highFirst ? std::string{'\0', c} : std::string{c, '\0'};
  return units;
}

std::string Encoded(Random &random, const std::string &body) {
  const std::string utf8 = "<?xml version=\"1.0\" encoding=\"utf-8\" ?>";
  switch (random.Below(30)) {
  case 0:
    return "\xEF\xBB\xBF" + utf8 + body;
  case 1:
    return "\xFF\xFE" + Utf16("<?xml version=\"1.0\" encoding=\"utf-16\"?>" + body, false);
  case 2:
    return "\xFE\xFF" + Utf16(body, true);
  case 3:
    return body;
  case 4:
    return "<?xml version=\"1.0\" encoding=\"" + random.Of(usualTexts) + "\"?>" + body;
  case 5:
    return "<?xml version=\"1.0\" encoding=\"iso-8859-1\"?>" + body;
  case 6:
    return utf8 + "<!DOCTYPE UIRoot [<!ENTITY a \"b\">]>" + body;
  case 7:
    return " " + utf8 + body;
  default:
    return utf8 + body;
  }
}

std::string Number(std::size_t number, int bytes, bool highFirst) {
  std::string text;
  for (int i = 0; i < bytes; ++i)
    text += static_cast<char>(number >> 8 * i & 0xFF);
  if (highFirst)
    std::reverse(text.begin(), text.end());
  return text;
}

std::size_t AnySide(Random &random) {
  constexpr std::array<std::size_t, 16> sides = {
      0, 1, 2, 47, 48, 49, 300, 4'096, 4'097, 23'000, 30'000, 32'768, 0x7FFFFFFF, 0x80000000, 0xFFFFFFF0, 0xFFFFFFFF};
  return random.Once(2) ? random.Of(sides) : random.Below(400);
}

std::string Bitmap(Random &random, bool isInIcon) {
  constexpr std::array<std::size_t, 8> depths = {0, 1, 4, 8, 16, 24, 32, 65535};
  constexpr std::array<std::size_t, 7> lengths = {0, 12, 16, 40, 56, 108, 124};
  const std::size_t width = AnySide(random);
  return Number(random.Once(4) ? random.Of(lengths) : 40, 4, false) + Number(width, 4, false) +
         Number(isInIcon ? 2 * width : AnySide(random), 4, false) +
         Number(random.Once(8) ? random.Below(9) : 1, 2, false) + Number(random.Of(depths), 2, false) +
         Number(random.Once(3) ? random.Below(9) : 0, 4, false) +
         Number(random.Once(2) ? 0 : AnySide(random), 4, false) + std::string(8, '\0') +
         Number(random.Once(2) ? 0 : AnySide(random), 4, false) + Number(random.Below(9), 4, false) + AnyBytes(random);
}

std::string Png(Random &random) {
  constexpr std::array<std::size_t, 6> depths = {0, 1, 2, 8, 16, 255};
  const auto chunk = [](const std::string &name, const std::string &data) {
    std::uint32_t sum = 0xFFFFFFFF; // the checksum of the format, without which nothing behind it is looked at
    for (const char c : name + data) {
      sum ^= static_cast<unsigned char>(c);
      for (int bit = 0; bit < 8; ++bit)
        sum = sum >> 1 ^ ((sum & 1U) != 0 ? 0xEDB88320 : 0);
    }
    return Number(data.size(), 4, true) + name + data + Number(~sum, 4, true);
  };
  std::string picture =
      "\x89PNG\r\n\x1a\n"s + chunk("IHDR", Number(AnySide(random), 4, true) + Number(AnySide(random), 4, true) +
                                               Number(random.Of(depths), 1, true) + Number(random.Below(8), 1, true) +
                                               Number(random.Once(9), 1, true) + Number(random.Once(9), 1, true) +
                                               Number(random.Below(3), 1, true));
  if (random.Once(2))
    picture += chunk("PLTE", std::string(3 * random.Below(300), 'x'));
  if (random.Once(3))
    picture += chunk("tRNS", std::string(random.Below(300), 'x'));
  return picture + chunk("IDAT", "\x78\x9C" + AnyBytes(random)) + chunk("IEND", {});
}

std::string Jpeg(Random &random) {
  const auto segment = [](char marker, const std::string &data) {
    return "\xFF"s + marker + Number(data.size() + 2, 2, true) + data;
  };
  std::string picture = "\xFF\xD8" + segment('\xE0', "JFIF\0\1\1\0\0\1\0\1\0\0"s);
  if (random.Once(2))
    picture += segment('\xDB', "\0"s + std::string(64, '\1'));
  if (random.Once(2))
    picture += segment('\xC4', AnyBytes(random).substr(0, 60));
  picture += segment(static_cast<char>(0xC0 + random.Below(4)), "\x08" + Number(AnySide(random), 2, true) +
                                                                    Number(AnySide(random), 2, true) +
                                                                    "\3\1\x22\0\2\x11\0\3\x11\0"s);
  return picture + segment('\xDA', "\3\1\0\2\x11\3\x11\0\x3F\0"s) + AnyBytes(random);
}

/// A block of texts, most of them short.
std::string TextBlock(Random &random) {
  std::string texts = "\0\0"s; // the first of the block has the number 0
  for (int i = 0; i < 15; ++i) {
    const std::size_t length = random.Once(8) ? random.Below(0x10000) : random.Below(20);
    texts += Number(length, 2, false) + std::string(random.Once(8) ? random.Below(600) : 2 * (length % 300), 'x');
  }
  return texts;
}

/// A group of one icon.
std::string IconGroup(Random &random, std::size_t iconSize) {
  return "\0\0\1\0"s + Number(random.Once(8) ? AnySide(random) : 1, 2, false) + "\x30\x30\0\0"s + Number(1, 2, false) +
         Number(32, 2, false) + Number(iconSize, 4, false) + Number(random.Once(8) ? AnySide(random) : 1, 2, false);
}

std::string Gif(Random &random) {
  const std::size_t width = AnySide(random), height = AnySide(random);
  return "GIF89a" + Number(width, 2, false) + Number(height, 2, false) + random.Byte() + "\0\0"s +
         AnyBytes(random).substr(0, 768) + "," + Number(0, 4, false) + Number(AnySide(random), 2, false) +
         Number(AnySide(random), 2, false) + random.Byte() + AnyBytes(random) + ";";
}

} // namespace

std::string AnyBytes(Random &random) {
  std::string bytes(random.Once(10) ? random.Below(5'000) : random.Below(200), '\0');
  if (!random.Once(4))
    for (char &c : bytes)
      c = random.Byte();
  return bytes;
}

std::string Mutated(Random &random, std::string bytes) {
  for (std::size_t changes = random.Below(4) + 1; changes > 0 && !bytes.empty(); --changes) {
    const std::size_t at = random.Below(bytes.size());
    const std::size_t length = std::min(bytes.size() - at, random.Below(20) + 1);
    switch (random.Below(7)) {
    case 0:
      bytes[at] = random.Byte();
      break;
    case 1:
      bytes[at] = static_cast<char>(bytes[at] ^ 1 << random.Below(8));
      break;
    case 2:
      bytes.erase(at, length);
      break;
    case 3:
      bytes.insert(at, bytes.substr(random.Below(bytes.size()), length));
      break;
    case 4:
      bytes.replace(at, length, std::string(length, random.Once(2) ? '\xFF' : '\0'));
      break;
    case 5:
      bytes.insert(at, AnyBytes(random).substr(0, 30));
      break;
    default:
      if (random.Once(3))
        bytes.resize(at);
      break;
    }
  }
  return bytes;
}

std::string AnyText(Random &random) {
  switch (random.Below(12)) {
  case 0:
    return random.Of(oddTexts);
  case 1:
    return random.Of(oddTexts) + random.Of(usualTexts);
  case 2:
    return random.Of(usualTexts) + random.Of(oddTexts) + random.Of(oddTexts);
  case 3:
    return random.Once(10) ? LongText(random) : random.Of(usualTexts);
  default:
    return random.Of(usualTexts);
  }
}

std::string AnyXml(Random &random, const Grammar &grammar) {
  std::vector<Node> entries;
  for (std::size_t count = random.Below(5) + (random.Once(30) ? 40 : 0); count > 0; --count)
    entries.push_back(Entry(random, grammar));
  Node root;
  for (auto name = grammar.list.rbegin(); name != grammar.list.rend(); ++name) {
    root = {.name = *name, .text = {}, .attributes = {}, .children = std::move(entries)};
    entries = {root};
  }
  for (std::size_t faults = random.Below(4); faults > 0; --faults)
    MakeFault(random, root, grammar);
  std::string body;
  AppendNode(random, body, root);
  const std::string xml = Encoded(random, body);
  return random.Once(8) ? Mutated(random, xml) : xml;
}

std::string AnyProgram(Random &random) {
  const std::string icon = random.Once(4) ? Png(random) : Bitmap(random, true);
  const std::string texts = TextBlock(random), group = IconGroup(random, icon.size());
  std::string program = tests::MakeProgram({{3, icon}, {6, texts}, {14, group}});
  const std::size_t numbersEnd = std::min(program.size(), tests::programHeadBytes + 300);
  for (std::size_t faults = random.Below(4); faults > 0; --faults) {
    const std::size_t at = 60 + random.Below((numbersEnd - 64) / 2) * 2;
    const std::size_t number = random.Once(3) ? random.Below(program.size() + 40) : AnySide(random);
    program.replace(at, 4, Number(random.Once(4) ? 0x80000000 | number : number, 4, false));
  }
  return random.Once(4) ? Mutated(random, program) : program;
}

std::string AnyWebShortcut(Random &random) {
  std::string shortcut = random.Once(8) ? AnyText(random) : "[InternetShortcut]\r\n";
  for (std::size_t lines = random.Below(8); lines > 0; --lines) {
    constexpr std::array names = {"URL",         "IconFile", "IconIndex", "WorkingDirectory",
                                  "ShowCommand", "HotKey",   "Modified"};
    shortcut += random.Of(names) + "="s + (random.Once(3) ? std::to_string(AnySide(random)) : AnyText(random)) + "\r\n";
  }
  return random.Once(4) ? Mutated(random, shortcut) : shortcut;
}

std::string AnyPicture(Random &random, PictureKind kind) {
  switch (kind) {
  case PictureKind::Png:
    return Png(random);
  case PictureKind::Bmp:
    return "BM" + Number(random.Below(9'000), 4, false) + std::string(4, '\0') +
           Number(random.Once(4) ? AnySide(random) : 54, 4, false) + Bitmap(random, false);
  case PictureKind::Icon: {
    const std::string picture = random.Once(2) ? Bitmap(random, true) : Png(random);
    return "\0\0\1\0"s + Number(random.Once(8) ? AnySide(random) : 1, 2, false) + random.Byte() + random.Byte() +
           std::string(6, '\0') + Number(random.Once(8) ? AnySide(random) : picture.size(), 4, false) +
           Number(random.Once(8) ? AnySide(random) : 22, 4, false) + picture;
  }
  case PictureKind::Jpeg:
    return Jpeg(random);
  case PictureKind::Gif:
    return Gif(random);
  }
  return {};
}

} // namespace lumenor::fuzz
