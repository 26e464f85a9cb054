#include "toolkit/TextBoxScene.h"

#include <algorithm>

#include "system/Handles.h"
#include "system/WindowException.h"
#include "toolkit/EditReading.h"

namespace lumenor::tests {

namespace {

std::unique_ptr<TopLevel> root;

class RootWindow : public ::testing::Environment {
public:
  void TearDown() override { root.reset(); }
};

[[maybe_unused]] const ::testing::Environment *const rootWindow = ::testing::AddGlobalTestEnvironment(new RootWindow);

} // namespace

TopLevel &TextBoxScene::Root() {
  if (root == nullptr)
    root = std::make_unique<TopLevel>();
  return *root;
}

long TextBoxScene::Repaints() { return static_cast<long>(std::ranges::count(Root().calls, "Invalidate")); }

TextBoxScene::TextBoxScene() {
  Root().calls.clear();
  box.parent = &Root();
  const RECT bounds = Bounds();
  box.SetBounds(&bounds);
  box.FontSize = static_cast<float>(ScaleY(10));
  box.MaxLength = 150;
}

TextBoxScene::~TextBoxScene() { ForgetWindowException(); }

RECT TextBoxScene::Bounds() { return {ScaleX(20), ScaleY(10), ScaleX(20) + ScaleX(84), ScaleY(10) + ScaleY(12)}; }

void TextBoxScene::Open() {
  box.OnAttached();
  box.ApplySystemFont();
}

std::wstring TextBoxScene::Text() const { return ReadWindowText(box.handle); }

void TextBoxScene::Select(int start, int end) {
  ::SendMessageW(box.handle, EM_SETSEL, static_cast<WPARAM>(start), end);
  ::SendMessageW(box.handle, EM_SCROLLCARET, 0, 0);
}

int TextBoxScene::PositionOf(std::size_t index) const {
  return static_cast<short>(LOWORD(::SendMessageW(box.handle, EM_POSFROMCHAR, index, 0)));
}

int TextBoxScene::WidthOf(const std::wstring &text) const {
  const WindowDeviceContext context(box.handle);
  const SelectedObject selected(context.Get(), reinterpret_cast<HGDIOBJ>(::SendMessageW(box.handle, WM_GETFONT, 0, 0)));
  SIZE size{};
  ::GetTextExtentPoint32W(context.Get(), text.data(), static_cast<int>(text.size()), &size);
  return size.cx;
}

TEXTMETRICW TextBoxScene::FontMetrics() const {
  const WindowDeviceContext context(box.handle);
  const SelectedObject selected(context.Get(), reinterpret_cast<HGDIOBJ>(::SendMessageW(box.handle, WM_GETFONT, 0, 0)));
  TEXTMETRICW metrics{};
  ::GetTextMetricsW(context.Get(), &metrics);
  return metrics;
}

void TextBoxScene::Paint() {
  const D2D1_RECT_F all{0, 0, static_cast<float>(ScaleX(140)), static_cast<float>(ScaleY(40))};
  surface.Draw([&] { Root().PaintChild(surface.Target(), &box, &all); });
}

std::vector<int> TextBoxScene::PaintedColumns() const {
  std::vector<int> columns;
  for (int x = 0; x < FieldWidth(); ++x) {
    bool painted = false;
    for (int y = 0; y < FieldHeight(); ++y)
      painted = painted || At(x, y) != 0;
    if (painted)
      columns.push_back(x);
  }
  return columns;
}

bool TextBoxScene::KeptWithinTheField() const {
  const RECT bounds = Bounds();
  for (int y = 0; y < ScaleY(40); ++y)
    for (int x = 0; x < ScaleX(140); ++x)
      if (!::PtInRect(&bounds, {x, y}) && surface.At(x, y) != 0)
        return false;
  return true;
}

} // namespace lumenor::tests
