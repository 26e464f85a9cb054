#pragma once
// A window of the toolkit's kind that writes down what it receives and answers as a test wants.

#include <algorithm>
#include <functional>
#include <vector>

#include "toolkit/WindowImpl.h"

namespace lumenor::tests {

struct ReceivedMessage {
  UINT message;
  WPARAM wParam;
  LPARAM lParam;
  bool operator==(const ReceivedMessage &) const = default;
};

template <typename Tag> class Recorder
    : public CWindowImpl<Tag, CWindow, CWinTraits<WS_CHILD | WS_VISIBLE | BS_OWNERDRAW, 0>> {
public:
  BOOL ProcessWindowMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam, LRESULT &result,
                            DWORD = 0) override {
    received.push_back({message, wParam, lParam});
    windows.push_back(window);
    return answer ? answer(message, result) : FALSE;
  }
  void OnFinalMessage(HWND window) override {
    finalWindow = window;
    handleAtFinal = this->handle;
  }

  bool Received(UINT message) const {
    return std::any_of(received.begin(), received.end(), [&](const auto &entry) { return entry.message == message; });
  }
  std::vector<ReceivedMessage> AllOf(UINT message) const {
    std::vector<ReceivedMessage> found;
    std::copy_if(received.begin(), received.end(), std::back_inserter(found),
                 [&](const auto &entry) { return entry.message == message; });
    return found;
  }

  std::function<BOOL(UINT message, LRESULT &result)> answer;
  std::vector<ReceivedMessage> received;
  std::vector<HWND> windows;
  HWND finalWindow = nullptr;
  HWND handleAtFinal = reinterpret_cast<HWND>(1);
};

/// Of the toolkit's own class.
class PlainRecorder : public Recorder<PlainRecorder> {};

/// Built upon the platform's button.
class ButtonRecorder : public Recorder<ButtonRecorder> {
public:
  static const wchar_t *GetSuperClassName() { return L"BUTTON"; }
};

} // namespace lumenor::tests
