#include "platform/desktop/shell.h"

#include <QDesktopServices>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QUrl>

namespace {

// Always with its scheme in front, so that no program can take it for an option.
QUrl UrlOf(const std::string& target) {
  QString path = QFile::decodeName(target.c_str());
  // With a colon in front it would be one of the built-in files.
  if (path.startsWith(u':')) path.prepend(QStringLiteral("./"));
  // A file first: its name may look like an address.
  if (QFileInfo::exists(path)) return QUrl::fromLocalFile(QFileInfo(path).absoluteFilePath());
  static const QRegularExpression kScheme(QStringLiteral("^[A-Za-z][A-Za-z0-9+.-]+:"));
  if (kScheme.match(path).hasMatch()) return QUrl(path);
  if (path.startsWith(QStringLiteral("www."), Qt::CaseInsensitive))
    return QUrl(QStringLiteral("https://") + path);
  return {};
}

void OpenUrl(const QUrl& url) {
  if (!url.isValid() || url.isEmpty()) return;
  if (RunInBackground("xdg-open", {url.toEncoded().toStdString()})) return;
  QDesktopServices::openUrl(url);
}

}  // namespace

void OpenOnDesktop(const std::string& target) {
  OpenUrl(UrlOf(target));
}

void OpenMail(const std::string& address) {
  const QByteArray encoded = QUrl::toPercentEncoding(QString::fromStdString(address), "@,");
  OpenUrl(QUrl::fromEncoded("mailto:" + encoded, QUrl::StrictMode));
}

void PrintFile(const std::string& path) {
  const QFileInfo file(QFile::decodeName(path.c_str()));
  if (!file.exists()) return;
  // An absolute path begins with a slash: it is no option.
  const std::string absolute = QFile::encodeName(file.absoluteFilePath()).toStdString();
  if (!RunInBackground("lp", {absolute})) OpenOnDesktop(absolute);
}

bool RunInBackground(const std::string& program, const std::vector<std::string>& arguments) {
  const QString found = QStandardPaths::findExecutable(QString::fromStdString(program));
  if (found.isEmpty()) return false;
  QStringList list;
  for (const std::string& argument : arguments) list << QFile::decodeName(argument.c_str());
  QProcess process;
  process.setProgram(found);
  process.setArguments(list);
  process.setStandardInputFile(QProcess::nullDevice());
  process.setStandardOutputFile(QProcess::nullDevice());
  process.setStandardErrorFile(QProcess::nullDevice());
  return process.startDetached();
}

std::string BuiltInPictureFile(const std::string& name) {
  QFile file(QStringLiteral(":/daybrix/") + QString::fromStdString(name) + QStringLiteral(".png"));
  return file.open(QIODevice::ReadOnly) ? file.readAll().toStdString() : std::string();
}
