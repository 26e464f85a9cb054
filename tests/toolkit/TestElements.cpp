#include "toolkit/TestElements.h"

#include "system/HResultError.h"

namespace lumenor::tests {

std::ostream &operator<<(std::ostream &stream, const Box &box) {
  return stream << '{' << box.left << ", " << box.top << ", " << box.width << ", " << box.height << '}';
}

Box BoxOf(const UIElement &element) {
  return {element.Left.Get(), element.Top.Get(), element.Width.Get(), element.Height.Get()};
}

Box BoxOf(HWND window) {
  RECT rect{};
  ::GetWindowRect(window, &rect);
  ::MapWindowPoints(nullptr, ::GetParent(window), reinterpret_cast<POINT *>(&rect), 2);
  return {rect.left, rect.top, rect.right - rect.left, rect.bottom - rect.top};
}

std::vector<HWND> ChildWindows(HWND parent) {
  std::vector<HWND> windows;
  for (HWND child = ::GetWindow(parent, GW_CHILD); child != nullptr; child = ::GetWindow(child, GW_HWNDNEXT))
    windows.push_back(child);
  return windows;
}

Leaf::Leaf(long desiredWidth, long desiredHeight) {
  DesiredWidth.Set(desiredWidth);
  DesiredHeight.Set(desiredHeight);
}

void Leaf::Paint(RenderTargetPtr, const D2D1_RECT_F *rect) { paints.push_back(*rect); }

void Leaf::Invalidate() {
  calls.push_back("Invalidate");
  UIElement::Invalidate();
}

void Leaf::OnAttached() { calls.push_back(parent == nullptr ? "OnAttached without parent" : "OnAttached"); }

void Leaf::OnDetached() { calls.push_back(parent == nullptr ? "OnDetached without parent" : "OnDetached"); }

TopLevel::TopLevel()
    : window(ThrowIfNull(::CreateWindowExW(WS_EX_TOOLWINDOW, L"STATIC", L"", WS_POPUP, 100, 100, 400, 300, nullptr,
                                           nullptr, nullptr, nullptr))) {
  // Not activated: the test platform takes 2 s to hide a window that was.
  ::ShowWindow(window, SW_SHOWNOACTIVATE);
}

TopLevel::~TopLevel() { ::DestroyWindow(window); }

GeometryLog::GeometryLog(UIElement &element) : element(element), listener(MakeListener(this, &GeometryLog::OnChange)) {
  for (Property<long> *property :
       {&element.Left, &element.Top, &element.Width, &element.Height, &element.DesiredWidth, &element.DesiredHeight})
    property->changed.AddListener(listener.get());
}

void GeometryLog::OnChange(PropertyChangeEventArgs<long> *args) {
  const char *name = args->source == &element.Left           ? "Left"
                     : args->source == &element.Top          ? "Top"
                     : args->source == &element.Width        ? "Width"
                     : args->source == &element.Height       ? "Height"
                     : args->source == &element.DesiredWidth ? "DesiredWidth"
                                                             : "DesiredHeight";
  changes.push_back(std::string(name) + " " + std::to_string(args->oldValue) + " -> " + std::to_string(args->newValue));
}

} // namespace lumenor::tests
