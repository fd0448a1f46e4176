#include "platform/desktop/file_dialog.h"

#include <QFile>
#include <QFileDialog>

#include "platform/desktop/qt/font_handle.h"
#include "platform/desktop/qt/window_table.h"

namespace {

QWidget* TopLevelOf(HWND window) {
  const WindowEntry* entry = FindWindowEntry(window);
  return entry != nullptr ? entry->widget->window() : nullptr;
}

// "*.*" means all files, also those without a dot.
QString Spelled(const std::string& text) {
  return QString::fromStdString(text).replace(QStringLiteral("*.*"), QStringLiteral("*"));
}

// "Calendars (*.cld)": the patterns stand at the end, once.
QString NameFilter(const FileFilter& filter) {
  QStringList patterns;
  for (const std::string& pattern : filter.patterns) patterns << Spelled(pattern);
  const QString inBrackets = u'(' + patterns.join(u' ') + u')';
  const QString description = Spelled(filter.description);
  return description.endsWith(inBrackets) ? description : description + u' ' + inBrackets;
}

// What a name without an extension gets while files of that kind are shown.
QString ExtensionOf(const FileFilter& filter, const std::string& otherwise) {
  const std::string& pattern = filter.patterns.front();
  const bool says = pattern.starts_with("*.") && pattern != "*.*";
  return QString::fromStdString(says ? pattern.substr(2) : otherwise);
}

// True when a choice was made.
bool Ask(QFileDialog& dialog, HWND owner, std::string& path) {
  const bool accepted = dialog.exec() == QDialog::Accepted && !dialog.selectedFiles().isEmpty();
  if (accepted) path = QFile::encodeName(dialog.selectedFiles().constFirst()).toStdString();
  if (QWidget* living = TopLevelOf(owner)) living->activateWindow();
  return accepted;
}

}  // namespace

bool AskForFile(HWND owner, const FileQuestion& question, std::string& path) {
  UseDialogFont();
  QFileDialog dialog(TopLevelOf(owner));
  dialog.setAcceptMode(question.saving ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
  dialog.setFileMode(question.saving ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
  dialog.setDirectory(QFile::decodeName(question.folder.c_str()));
  QStringList filters;
  for (const FileFilter& filter : question.filters) filters << NameFilter(filter);
  if (!filters.isEmpty()) dialog.setNameFilters(filters);
  if (!question.defaultExtension.empty()) {
    dialog.setDefaultSuffix(QString::fromStdString(question.defaultExtension));
    QObject::connect(&dialog, &QFileDialog::filterSelected, &dialog, [&](const QString& chosen) {
      const qsizetype kind = filters.indexOf(chosen);
      if (kind < 0) return;
      const FileFilter& filter = question.filters[static_cast<std::size_t>(kind)];
      dialog.setDefaultSuffix(ExtensionOf(filter, question.defaultExtension));
    });
  }
  return Ask(dialog, owner, path);
}

bool AskForFolder(HWND owner, const std::string& title, std::string& path) {
  UseDialogFont();
  QFileDialog dialog(TopLevelOf(owner), QString::fromStdString(title));
  dialog.setFileMode(QFileDialog::Directory);
  dialog.setOption(QFileDialog::ShowDirsOnly);
  dialog.setDirectory(QFile::decodeName(path.c_str()));
  return Ask(dialog, owner, path);
}
