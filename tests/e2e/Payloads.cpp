#include "e2e/Payloads.h"

#include <algorithm>
#include <cctype>
#include <cstdio>

#include "system/Handles.h"

namespace lumenor::e2e {
namespace {

using Rows = std::vector<std::pair<std::string, std::string>>;

std::string Escaped(const std::string &text) {
  std::string out;
  for (const char c : text) {
    if (c == '"')
      out += "&quot;";
    else if (c == '&')
      out += "&amp;";
    else
      out += c;
  }
  return out;
}

std::string RowText(const std::string &name, const std::string &value) {
  return "<attribute name=\"" + name + "\" value=\"" + Escaped(value) + "\"/>";
}

/// What stands before the value of a row.
std::string RowStart(const std::string &name) { return "name=\"" + name + "\" value=\""; }

void MaskRows(std::string &payload, const std::string &row, const std::string &mask) {
  const std::string start = RowStart(row);
  for (std::size_t at = 0; (at = payload.find(start, at)) != std::string::npos;) {
    at += start.size();
    payload.replace(at, payload.find('"', at) - at, mask);
  }
}

/// Each element begins a line, so that a failed comparison shows which one it is.
std::string OnLines(std::string payload) {
  for (std::size_t at = 0; (at = payload.find("<element ", at)) != std::string::npos; at += 2)
    payload.insert(at, 1, '\n');
  return payload;
}

ULONGLONG FileTimeOf(const SYSTEMTIME &time) {
  FILETIME fileTime = {};
  return ::SystemTimeToFileTime(&time, &fileTime)
             ? ULARGE_INTEGER{{fileTime.dwLowDateTime, fileTime.dwHighDateTime}}.QuadPart
             : 0;
}

} // namespace

std::wstring PayloadFolder(const Installation &installation) { return installation.UserFolder() + L"\\ruq"; }

std::wstring OpenPayload(const Installation &installation) { return PayloadFolder(installation) + L"\\ruqDock.tmp"; }

std::vector<std::wstring> ClosedPayloads(const Installation &installation) {
  std::vector<std::wstring> names;
  WIN32_FIND_DATAW found = {};
  const FindHandle find(::FindFirstFileW((PayloadFolder(installation) + L"\\*.ruq").c_str(), &found));
  for (BOOL more = static_cast<bool>(find); more; more = ::FindNextFileW(find.Get(), &found))
    names.emplace_back(found.cFileName);
  return names;
}

std::string ElementText(const std::string &name, const std::string &type, int sequence, const std::string &action,
                        const Rows &rows) {
  std::string text = "<element name=\"" + name + "\" type=\"" + type + "\" sequence-id=\"" + std::to_string(sequence) +
                     "\">" + RowText("SessionID", "SESSION") + RowText("Feature", "Dock") + RowText("Action", action) +
                     RowText("TrackTimestamp", "TIME");
  for (const auto &[rowName, value] : rows)
    text += RowText(rowName, value);
  return text + "</element>";
}

std::string WindowElement(int sequence, const std::string &action) {
  return ElementText("Dock", "Window", sequence, action, {{"SubSessionID", "1"}});
}

std::string PayloadText(const std::vector<std::string> &elements, const std::string &header) {
  std::string text = "<?xml version=\"1.0\" encoding = \"utf-8\"?>\n<payload>" + header;
  for (const std::string &element : elements)
    text += element;
  return OnLines(text + "</payload>\n");
}

std::string HeaderText(const std::string &brand, const std::string &platform, const std::string &applicationId) {
  return "<session-tracking-info appName=\"lumenor3.4\">" + RowText("version", "3.4") + RowText("start", "TIME") +
         RowText("end", "TIME") + RowText("brand", brand) + RowText("platform", platform) +
         RowText("applicationid", applicationId) + "</session-tracking-info>";
}

std::string Masked(const std::string &payload) {
  std::string masked = payload;
  for (const char *row : {"TrackTimestamp", "start", "end"})
    MaskRows(masked, row, "TIME");
  MaskRows(masked, "SessionID", "SESSION");
  return OnLines(masked);
}

std::vector<std::string> ValuesOf(const std::string &payload, const std::string &row) {
  std::vector<std::string> values;
  const std::string start = RowStart(row);
  for (std::size_t at = 0; (at = payload.find(start, at)) != std::string::npos;) {
    at += start.size();
    values.push_back(payload.substr(at, payload.find('"', at) - at));
  }
  return values;
}

bool IsUuid(const std::string &text) {
  const std::string form = "xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx";
  return std::equal(text.begin(), text.end(), form.begin(), form.end(), [](char c, char expected) {
    return expected == 'x' ? std::isxdigit(static_cast<unsigned char>(c)) != 0 : c == expected;
  });
}

ULONGLONG TimeOf(const std::string &text) {
  SYSTEMTIME time = {};
  const bool isUtc = text.ends_with(" UTC");
  if (std::sscanf(text.c_str(), "%hu/%hu/%hu %hu:%hu:%hu", &time.wMonth, &time.wDay, &time.wYear, &time.wHour,
                  &time.wMinute, &time.wSecond) != 6)
    return 0;
  char again[64] = {};
  std::snprintf(again, sizeof again, "%d/%d/%d %d:%d:%d%s", time.wMonth, time.wDay, time.wYear, time.wHour,
                time.wMinute, time.wSecond, isUtc ? " UTC" : "");
  return text == again ? FileTimeOf(time) : 0;
}

ULONGLONG Now() {
  SYSTEMTIME now = {};
  ::GetSystemTime(&now);
  now.wMilliseconds = 0;
  return FileTimeOf(now);
}

} // namespace lumenor::e2e
