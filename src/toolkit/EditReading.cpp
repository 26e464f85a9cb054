#include "toolkit/EditReading.h"

#include <algorithm>
#include <cstdlib>

#include "system/Handles.h"

namespace lumenor {

namespace {

// A user can't enter that much into a field of the dock, but another program may have set a very long text. Characters
// further than this off the field's edges don't affect how the visible ones look.
constexpr std::size_t unseenCharacters = 256;

/// The control's own font, selected into a device context of its window.
class EditFont {
public:
  explicit EditFont(HWND window)
      : context(window), selected(context.Get(), reinterpret_cast<HGDIOBJ>(::SendMessageW(window, WM_GETFONT, 0, 0))) {}

  long Width(const wchar_t *text, int length) const {
    SIZE size{};
    ::GetTextExtentPoint32W(context.Get(), text, length, &size);
    return size.cx;
  }

  TEXTMETRICW Metrics() const {
    TEXTMETRICW metrics{};
    ::GetTextMetricsW(context.Get(), &metrics);
    return metrics;
  }

private:
  WindowDeviceContext context;
  SelectedObject selected;
};

/// The character at `x` in the control; 0 when there is none.
std::size_t CharacterAt(HWND window, long x) {
  const LRESULT found = ::SendMessageW(window, EM_CHARFROMPOS, 0, MAKELPARAM(x, 1));
  return found == -1 ? 0 : LOWORD(found);
}

struct Range {
  std::size_t start, end;
};

/// What is in sight of a text of `length` characters, with the unseen ones that matter.
Range VisibleRange(HWND window, const RECT &client, std::size_t length) {
  if (length <= unseenCharacters)
    return {0, length};
  // The list makes it a pair of values: of two arguments it would be one of references, to what is gone by then.
  const auto [first, last] =
      std::minmax({CharacterAt(window, client.left), CharacterAt(window, std::max(client.right - 1, 0L))});
  return {std::min(first - std::min(first, unseenCharacters), length),
          std::min(last + std::min(length, unseenCharacters), length)};
}

/// Sets positions and top.
void ReadPositions(HWND window, std::size_t first, EditReading &reading) {
  long last = reading.lineStart;
  for (std::size_t i = 0; i < reading.text.size(); ++i) {
    const LRESULT position = ::SendMessageW(window, EM_POSFROMCHAR, first + i, 0);
    if (position != -1) { // -1 for what the control doesn't count as part of its text
      last = static_cast<short>(LOWORD(position));
      reading.top = static_cast<short>(HIWORD(position));
    }
    reading.positions.push_back(last);
  }
}

/// Sets widths. Of a pair the second half has what the control gives it: all, or as much as the first.
void ReadWidths(const EditFont &font, EditReading &reading) {
  const std::wstring &text = reading.text;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (i + 1 >= text.size() || !IS_SURROGATE_PAIR(text[i], text[i + 1])) {
      reading.widths.push_back(font.Width(&text[i], 1));
      continue;
    }
    const long whole = font.Width(&text[i], 2);
    const long half = std::abs(reading.positions[i + 1] - reading.positions[i]);
    reading.widths.push_back(half);
    reading.widths.push_back(half == 0 ? whole : half);
    ++i;
  }
}

void ReadSelection(HWND window, std::size_t first, EditReading &reading) {
  DWORD start = 0;
  DWORD end = 0;
  ::SendMessageW(window, EM_GETSEL, reinterpret_cast<WPARAM>(&start), reinterpret_cast<LPARAM>(&end));
  const auto toIndex = [&](std::size_t index) { return std::min(index - std::min(index, first), reading.text.size()); };
  reading.selectionStart = toIndex(start);
  reading.selectionEnd = std::max(toIndex(end), reading.selectionStart);
}

} // namespace

std::wstring ReadWindowText(HWND window) {
  std::wstring text(static_cast<std::size_t>(::GetWindowTextLengthW(window)) + 1, L'\0');
  text.resize(static_cast<std::size_t>(::GetWindowTextW(window, text.data(), static_cast<int>(text.size()))));
  return text;
}

EditReading ReadEdit(HWND window) {
  RECT client{};
  ::GetClientRect(window, &client);
  RECT line{};
  ::SendMessageW(window, EM_GETRECT, 0, reinterpret_cast<LPARAM>(&line));
  const EditFont font(window);
  const TEXTMETRICW metrics = font.Metrics();
  const std::wstring text = ReadWindowText(window);
  const Range range = VisibleRange(window, client, text.size());
  EditReading reading;
  reading.text = text.substr(range.start, range.end - range.start);
  reading.lineStart = line.left;
  reading.top = line.top;
  reading.height = metrics.tmHeight;
  reading.ascent = metrics.tmAscent;
  ReadPositions(window, range.start, reading);
  ReadWidths(font, reading);
  ReadSelection(window, range.start, reading);
  return reading;
}

std::optional<RECT> ReadEditCaret(HWND window) {
  GUITHREADINFO info{};
  info.cbSize = sizeof info;
  if (!::GetGUIThreadInfo(::GetCurrentThreadId(), &info) || info.hwndCaret != window)
    return std::nullopt;
  return info.rcCaret;
}

} // namespace lumenor
