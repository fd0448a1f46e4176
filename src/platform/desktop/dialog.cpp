#include "platform/desktop/dialog.h"

#include <QAbstractButton>
#include <QApplication>
#include <QEventLoop>
#include <QFile>
#include <QLayout>
#include <algorithm>
#include <cstring>
#include <map>

#include "platform/desktop/qt/control_text.h"
#include "platform/desktop/qt/dialog_controls.h"
#include "platform/desktop/qt/dialog_owner.h"
#include "platform/desktop/qt/dialog_templates.h"
#include "platform/desktop/qt/dialog_widget.h"
#include "platform/desktop/qt/font_handle.h"
#include "platform/desktop/window.h"

namespace {

// The modal dialogs that run, each in its own nested loop.
struct ModalRun {
  QEventLoop loop;
  int result = 0;
};

std::map<HWND, ModalRun*>& ModalRuns() {
  static std::map<HWND, ModalRun*> runs;
  return runs;
}

std::map<int, DialogTemplateSetup>& Templates() {
  static std::map<int, DialogTemplateSetup> templates;
  return templates;
}

// Makes a hidden dialog with its controls and binds its procedure. The first message is not WM_INITDIALOG, so
// that a procedure can use it to tie its object to the dialog.
HWND MakeDialog(int templateId, HWND owner, DialogProcedure procedure) {
  const DialogTemplateSetup setup = FindDialogTemplate(templateId);
  if (setup == nullptr) return nullptr;
  UseDialogFont();
  auto* widget = new DialogWidget(ReadyOwner(owner));
  WindowEntry& entry = AddWindow(widget, WindowKind::kDialog, "Dialog");
  entry.dialogProcedure = procedure;
  const HWND dialog = entry.handle;
  setup(*widget);
  // The procedure places windows of its own among the controls: these must lie where they will be.
  if (QLayout* layout = widget->layout()) layout->activate();
  BindControls(*widget);
  SendMessage(dialog, WM_SETFONT, 0, 0);
  SendMessage(dialog, WM_INITDIALOG, 0, 0);
  return dialog;
}

QWidget* ControlOf(HWND dialog, int id) {
  const WindowEntry* entry = FindWindowEntry(GetDlgItem(dialog, id));
  return entry != nullptr ? entry->widget : nullptr;
}

}  // namespace

void AddDialogTemplate(int id, DialogTemplateSetup setup) {
  Templates()[id] = setup;
}

DialogTemplateSetup FindDialogTemplate(int id) {
  const auto found = Templates().find(id);
  return found != Templates().end() ? found->second : nullptr;
}

int DialogBox(int templateId, HWND owner, DialogProcedure procedure) {
  ModalRun run;
  bool ended = false;
  // A procedure may end the dialog while it is being made, before its handle is known here.
  ModalRun*& making = ModalRuns()[nullptr];
  ModalRun* const outer = making;
  making = &run;
  const HWND dialog = MakeDialog(templateId, owner, procedure);
  ended = ModalRuns()[nullptr] != &run;
  ModalRuns()[nullptr] = outer;
  if (dialog == nullptr) return -1;
  if (!ended && IsWindow(dialog)) {
    QWidget* widget = FindWindowEntry(dialog)->widget;
    ModalRuns()[dialog] = &run;
    widget->setWindowModality(Qt::ApplicationModal);
    widget->show();
    widget->activateWindow();
    run.loop.exec();
    ModalRuns().erase(dialog);
  }
  DestroyWindow(dialog);
  ReturnToOwner(owner);
  return run.result;
}

HWND CreateDialog(int templateId, HWND owner, DialogProcedure procedure) {
  const HWND dialog = MakeDialog(templateId, owner, procedure);
  if (IsWindow(dialog)) ShowWindow(dialog, SW_SHOW);
  return dialog;
}

bool EndDialog(HWND dialog, int result) {
  const WindowEntry* entry = FindWindowEntry(dialog);
  if (entry == nullptr || entry->kind != WindowKind::kDialog) return false;
  auto run = ModalRuns().find(dialog);
  if (run == ModalRuns().end()) run = ModalRuns().find(nullptr);
  if (run == ModalRuns().end() || run->second == nullptr) return false;
  run->second->result = result;
  entry->widget->hide();
  run->second->loop.quit();
  if (run->first == nullptr) run->second = nullptr;
  return true;
}

void SetDialogFrameless(HWND dialog) {
  const WindowEntry* entry = FindWindowEntry(dialog);
  if (entry == nullptr || entry->kind != WindowKind::kDialog) return;
  entry->widget->setWindowFlags(Qt::Dialog | Qt::FramelessWindowHint);
}

void BlockOtherWindows(HWND dialog) {
  const WindowEntry* entry = FindWindowEntry(dialog);
  if (entry != nullptr) entry->widget->setWindowModality(Qt::ApplicationModal);
}

HWND GetDlgItem(HWND dialog, int id) {
  const WindowEntry* entry = FindWindowEntry(dialog);
  if (entry == nullptr) return nullptr;
  const QList<QWidget*> children = entry->widget->findChildren<QWidget*>();
  for (const QWidget* child : children) {
    const WindowEntry* control = FindWindowEntry(HandleOf(child));
    if (control != nullptr && control->kind == WindowKind::kControl && control->controlId == id)
      return control->handle;
  }
  return nullptr;
}

bool SetDlgItemText(HWND dialog, int id, const char* text) {
  QWidget* control = ControlOf(dialog, id);
  if (control == nullptr) return false;
  SetControlText(*control, text);
  return true;
}

int GetDlgItemText(HWND dialog, int id, char* buffer, int size) {
  if (size <= 0) return 0;
  const QWidget* control = ControlOf(dialog, id);
  const std::string text = control != nullptr ? ControlText(*control) : std::string();
  const std::size_t length = std::min(text.size(), static_cast<std::size_t>(size) - 1);
  std::memcpy(buffer, text.data(), length);
  buffer[length] = '\0';
  return static_cast<int>(length);
}

void SetDlgItemPath(HWND dialog, int id, const std::string& path) {
  if (QWidget* control = ControlOf(dialog, id)) SetControlPath(*control, path);
}

std::string GetDlgItemPath(HWND dialog, int id) {
  const QWidget* control = ControlOf(dialog, id);
  return control != nullptr ? ControlPath(*control) : std::string();
}

void SetDialogTitle(HWND dialog, const std::string& title) {
  const WindowEntry* entry = FindWindowEntry(dialog);
  if (entry != nullptr) entry->widget->setWindowTitle(QFile::decodeName(title.c_str()));
}

void CheckDlgButton(HWND dialog, int id, bool checked) {
  if (auto* button = qobject_cast<QAbstractButton*>(ControlOf(dialog, id))) button->setChecked(checked);
}

bool IsDlgButtonChecked(HWND dialog, int id) {
  const auto* button = qobject_cast<QAbstractButton*>(ControlOf(dialog, id));
  return button != nullptr && button->isChecked();
}

LRESULT SendDlgItemMessage(HWND dialog, int id, UINT message, WPARAM wParam, LPARAM lParam) {
  const HWND control = GetDlgItem(dialog, id);
  return control != nullptr ? SendMessage(control, message, wParam, lParam) : kControlError;
}
