// Which calendar file the program works on, and how it is made and opened. Nothing is shown here: what went
// wrong comes back as a text for the caller to show, and a password is asked for through the caller's
// function.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "core/store/compaction.h"
#include "core/store/record_file.h"

namespace core {

// Asks the user for the password of the file at `path` and takes it into `password`. False when the user
// gives up. The caller of core decides how; the password is checked here.
using PasswordPrompt = std::function<bool(const std::string& path, std::string& password)>;

// What starting the program came to.
struct StartupChoice {
  bool chosen = false;        // else the user must create or choose a file
  std::string path;           // the calendar to open, in the file system's encoding
  std::string password;       // for it
  bool withExamples = false;  // for OpenCalendarFile, which creates the file
  std::string message;        // to be shown when not empty: why the file that was meant is not the one, or,
                              // though chosen, what could not be noted down
};

// Decides the file for the start of the program: the one named on the command line, else the one in the
// settings ("DefaulFile"), else the default file, which is entered in the settings and still has to be
// created. A file that the user knows, or the program finds, but cannot open is not chosen.
[[nodiscard]] StartupChoice ChooseStartupFile(const std::string& commandLine,
                                              const PasswordPrompt& askPassword);

// Finds the password for a file: the empty one, without asking, when the file has no Owner password; else
// what the user types, if it is one of the file's three. False, with a text for the user in `message`, when
// it is not, when the user gives up or when the file cannot be opened.
[[nodiscard]] bool AskFilePassword(const std::string& path, const PasswordPrompt& askPassword,
                                   std::string& password, std::string& message);

// The default calendar: "<program>.cld", in lower case, in the folder of calendars.
std::string DefaultCalendarPath();

// A calendar file that was opened, or why it was not.
struct OpenedCalendar {
  std::unique_ptr<RecordFile> file;    // null when the file could not be opened
  std::string message;                 // for the user, when not empty; it names the file
  OpenError error = OpenError::kNone;  // why there is none; kNone also when it is no calendar
};

// Opens a calendar that is there; one that a program left open when it died is first brought in order
// (RepairCheck).
[[nodiscard]] OpenedCalendar OpenExistingCalendar(const std::string& path, const std::string& password,
                                                  const CompactionWatcher& watcher = {});

// The same, but a calendar that does not exist is first created, with the three example appointments if asked
// for, and one that may be read but not written is opened as a Reader's, which the message says. A new file
// appears at the path whole or not at all; of several copies that find it missing at the same instant, one
// creates it and all open that one.
[[nodiscard]] OpenedCalendar OpenCalendarFile(const std::string& path, const std::string& password,
                                              bool withExamples, const CompactionWatcher& watcher = {});

}  // namespace core
