#include "platform/desktop/qt/window_table.h"

#include <QCoreApplication>
#include <QHash>
#include <QString>
#include <QWidget>
#include <memory>
#include <unordered_map>

#include "platform/desktop/qt/posted_message.h"
#include "platform/system/code_page.h"

namespace {

struct Table {
  std::unordered_map<HWND, std::unique_ptr<WindowEntry>> entries;
  QHash<const QWidget*, HWND> handles;
  std::uintptr_t last = 0;
};

Table& TheTable() {
  static Table table;
  return table;
}

}  // namespace

WindowEntry& AddWindow(QWidget* widget, WindowKind kind, const std::string& className) {
  Table& table = TheTable();
  auto entry = std::make_unique<WindowEntry>();
  entry->handle = reinterpret_cast<HWND>(++table.last);
  entry->widget = widget;
  entry->kind = kind;
  entry->className = className;
  table.handles.insert(widget, entry->handle);
  WindowEntry& added = *entry;
  table.entries.emplace(added.handle, std::move(entry));
  return added;
}

void AddFrame(WindowEntry& entry, QWidget* frame) {
  entry.frame = frame;
  TheTable().handles.insert(frame, entry.handle);
}

void RemoveWindow(HWND window) {
  Table& table = TheTable();
  const auto found = table.entries.find(window);
  if (found == table.entries.end()) return;
  table.handles.remove(found->second->widget);
  if (found->second->frame != nullptr) table.handles.remove(found->second->frame);
  table.entries.erase(found);
}

WindowEntry* FindWindowEntry(HWND window) {
  const auto found = TheTable().entries.find(window);
  return found == TheTable().entries.end() ? nullptr : found->second.get();
}

QWidget* WidgetOf(HWND window) {
  const WindowEntry* entry = FindWindowEntry(window);
  return entry != nullptr ? entry->widget : nullptr;
}

QWidget* OuterWidgetOf(HWND window) {
  const WindowEntry* entry = FindWindowEntry(window);
  return entry != nullptr ? entry->Outer() : nullptr;
}

HWND HandleOf(const QWidget* widget) {
  return TheTable().handles.value(widget, nullptr);
}

HWND HandleAround(const QWidget* widget) {
  for (; widget != nullptr; widget = widget->parentWidget()) {
    if (const HWND handle = HandleOf(widget)) return handle;
  }
  return nullptr;
}

std::vector<HWND> AllWindows() {
  std::vector<HWND> all;
  for (const auto& [handle, entry] : TheTable().entries) all.push_back(handle);
  return all;
}

QString TextFromCodePage(const char* text) {
  if (text == nullptr) return {};
  return QString::fromStdString(platform::Utf8FromCodePage(text));
}

std::string CodePageFromText(const QString& text) {
  std::string bytes;
  platform::CodePageFromUtf8(text.toStdString(), bytes);
  return bytes;
}

void PostToWidget(QWidget* widget, UINT message, WPARAM wParam, LPARAM lParam) {
  QCoreApplication::postEvent(widget, new PostedMessage(message, wParam, lParam));
}
