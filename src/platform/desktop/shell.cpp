#include "platform/desktop/shell.h"

#include <unistd.h>

#include <QDesktopServices>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QSet>
#include <QStandardPaths>
#include <QUrl>
#include <utility>

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

void MakeMute(QProcess& process) {
  process.setStandardInputFile(QProcess::nullDevice());
  process.setStandardOutputFile(QProcess::nullDevice());
  process.setStandardErrorFile(QProcess::nullDevice());
}

// The programs that run. They outlive this one, so nothing here is ever destroyed, which would stop them.
QSet<QProcess*>& Listened() {
  static auto* const processes = new QSet<QProcess*>;
  return *processes;
}

// Runs a program, and goes on listening for how it ends.
void RunAndListen(const QString& program, const QString& argument, WhenNotOpened notOpened) {
  auto* process = new QProcess;  // gone when it has ended
  Listened().insert(process);
  process->setProgram(program);
  process->setArguments({argument});
  process->setChildProcessModifier([] { setsid(); });
  MakeMute(*process);
  const auto end = [process, notOpened = std::move(notOpened)](bool opened) {
    Listened().remove(process);
    process->deleteLater();
    if (!opened && notOpened) notOpened();
  };
  QObject::connect(process, &QProcess::finished, process, [end](int code, QProcess::ExitStatus status) {
    end(code == 0 && status == QProcess::NormalExit);
  });
  QObject::connect(process, &QProcess::errorOccurred, process, [end](QProcess::ProcessError error) {
    if (error == QProcess::FailedToStart) end(false);
  });
  process->start();
}

bool OpenUrl(const QUrl& url, WhenNotOpened notOpened) {
  if (!url.isValid() || url.isEmpty()) return false;
  const QString opener = QStandardPaths::findExecutable(QStringLiteral("xdg-open"));
  if (opener.isEmpty()) return QDesktopServices::openUrl(url);
  RunAndListen(opener, QString::fromLatin1(url.toEncoded()), std::move(notOpened));
  return true;
}

}  // namespace

bool OpenOnDesktop(const std::string& target, WhenNotOpened notOpened) {
  return OpenUrl(UrlOf(target), std::move(notOpened));
}

bool OpenMail(const std::string& address, WhenNotOpened notOpened) {
  const QByteArray encoded = QUrl::toPercentEncoding(QString::fromStdString(address), "@,");
  return OpenUrl(QUrl::fromEncoded("mailto:" + encoded, QUrl::StrictMode), std::move(notOpened));
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
  MakeMute(process);
  return process.startDetached();
}
