// Files as the product uses them: opened for reading and writing by several copies at once, read and written
// in place, replaced whole by a rename. Nothing is cached here.
//
// Two byte-range locks far beyond any data ask the operating system what the file's own bytes cannot say:
// - in use: every open file holds a shared lock on one byte, so that FileInUse can tell, and a copy that died
//   counts as gone at once;
// - guard: a short exclusive lock on another byte around each read-modify-write of the file's bytes.
// On a file system without such locks everything works, only without their protection.
//
// Every call that moves bytes goes on after a signal (EINTR) and after a partial transfer; a transfer that
// still comes out short, because the file ended or the disk is full, is reported as the number of bytes that
// were moved.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace platform {

// What opening a file came to. `kInUse` is a file that another process holds exclusively (it is being
// replaced).
enum class FileResult { kDone, kMissing, kDenied, kIsFolder, kInUse, kFailed };

// The calls into the operating system, one entry each, so that a test can stand in for them and make the n-th
// read, write, flush, lock or rename fail or fall short. Each entry behaves as the POSIX call of its name and
// sets errno. The product never changes the table.
struct FileCalls {
  std::int64_t (*read)(int descriptor, void* buffer, std::size_t size, std::int64_t offset);         // pread
  std::int64_t (*write)(int descriptor, const void* buffer, std::size_t size, std::int64_t offset);  // pwrite
  int (*flush)(int descriptor);                                                                      // fsync
  int (*lock)(int descriptor, short type, std::int64_t offset);  // F_OFD_SETLK on one byte; type F_RDLCK ...
  int (*rename)(const char* from, const char* to);
  int (*renameNew)(const char* from, const char* to);  // renameat2 with RENAME_NOREPLACE
  int (*link)(const char* from, const char* to);
  std::int64_t (*size)(int descriptor);  // fstat's st_size, or -1
};

// The table in force. Tests assign to it and restore it.
FileCalls& SystemFileCalls();

// To be called first in main: a write beyond the size that the process may give a file (ulimit -f) then fails
// as on a full disk, and does not end the program.
void LetWritesBeyondLimitsFail();

// One open file. Movable, not copyable; closes itself. Created closed.
class File {
 public:
  File() = default;
  ~File();
  File(File&& other) noexcept;
  File& operator=(File&& other) noexcept;
  File(const File&) = delete;
  File& operator=(const File&) = delete;

  // Opens an existing file for reading and writing, shared with every other process, and takes its share of
  // the in-use lock. If the path was given to another file meanwhile (a compaction), opens that one. Waits at
  // most two seconds for a process that holds the file exclusively, then answers kInUse. The file must be
  // closed.
  FileResult OpenShared(const std::string& path);

  // Opens an existing file for reading only, as OpenShared in all else: what may not be written, or lies
  // where nothing may, can be read all the same. Writing to it fails.
  FileResult OpenReadOnly(const std::string& path);

  // Opens an existing file for reading and writing for oneself alone, as a compaction needs it until its
  // rename is done. kInUse, without waiting, when somebody has it open, this process included. The file must
  // be closed.
  FileResult OpenExclusive(const std::string& path);

  // Creates a file for reading and writing, replacing any file at the path, and holds it exclusively. kInUse,
  // with the bytes at the path untouched, when somebody has that file open; kMissing when there is no such
  // folder. The file must be closed.
  FileResult CreateExclusive(const std::string& path);

  // Gives up locks and descriptor. Does nothing on a closed file.
  void Close();
  bool IsOpen() const { return descriptor >= 0; }

  // Moves up to `size` bytes between `buffer` and the file at `offset` (bytes from the start, never
  // negative). Returns the bytes moved, fewer than `size` at the end of the file or when the disk is full; -1
  // when nothing could be moved because the call failed or the file is closed.
  std::int64_t ReadAt(void* buffer, std::size_t size, std::int64_t offset) const;
  std::int64_t WriteAt(const void* buffer, std::size_t size, std::int64_t offset);

  // Length in bytes, or -1 on failure.
  std::int64_t Size() const;

  // Whether anybody but this object has the file open, this process's other objects included. True also
  // where that cannot be told.
  bool UsedByOthers() const;

  // Brings everything written so far to the disk. False on failure or when closed.
  bool Flush();

  // Gives the file the rights of another one and, as far as the system lets it, its owner and group: for a
  // new file with the contents of an old one, before they are in it. Nothing happens when one of them is
  // closed.
  void TakeRightsOf(const File& other);

  // For a file that was opened exclusively: false when its file system has no locks, so that nothing can tell
  // whether somebody else has it open.
  bool LocksWork() const;

 private:
  friend class FileGuard;
  int descriptor = -1;
};

// Holds the guard lock of a file for a scope. Not recursive: never hold two on one file in one process.
class FileGuard {
 public:
  // Waits at most two seconds for the lock. A file system without locks grants it at once.
  explicit FileGuard(File& file);
  ~FileGuard();
  FileGuard(const FileGuard&) = delete;
  FileGuard& operator=(const FileGuard&) = delete;

  // False when another process kept the lock for the whole wait (it is stopped or stuck): write nothing then.
  bool Held() const { return held; }

 private:
  int descriptor;
  bool held;
  bool locked;
};

// True when a file, or anything else, is found at the path.
bool FileExists(const std::string& path);

// True when the file cannot be had for oneself alone: somebody, this process included, has it open, it may
// not be written, or it does not exist.
bool FileInUse(const std::string& path);

// Puts `size` bytes at `path` so that the path always names one whole file: writes a new file beside it,
// flushes it, renames it over the old one and flushes the folder. On failure the old file is untouched and
// the new one is gone. The new file has the old one's permissions and, as far as the system lets it, its
// owner and group; a file that may not be written is not replaced. Where the path is a symbolic link, the
// file it leads to is replaced and the link stays.
bool ReplaceFile(const std::string& path, const void* data, std::size_t size);

// The same, but only where nothing is at `path`: of several processes that do this at the same instant, one
// makes the file and the others get false, so that nobody's file is lost. On a file system that can neither
// rename without replacing nor link, the test and the rename are two steps.
bool WriteNewFile(const std::string& path, const void* data, std::size_t size);

// Gives the file `from`, which its writer has flushed, the name `to` in one step: a file that had the name is
// gone, its permissions, owner and group pass to the new one as in ReplaceFile, and the folder is flushed.
// Both must lie in one file system: put `from` beside ResolvedPath(to). On failure both files keep their
// names.
bool RenameFile(const std::string& from, const std::string& to);

// Gives the file `from` the name `to`, in the same folder, where nothing has it. False, with `from`
// unchanged, when something has or it may not be.
bool RenameNewFile(const std::string& from, const std::string& to);

// Takes a file away. False when there was none or it may not be.
bool RemoveFile(const std::string& path);

// The path of the file that a symbolic link at `path` leads to, whether or not it exists; `path` itself
// otherwise.
std::string ResolvedPath(const std::string& path);

// The path from the root on, without doubled slashes and the parts that stay in their folder (".").
std::string FullPath(const std::string& path);

// Reads a whole file of at most `limit` bytes into `content`. False (content empty) when it cannot be read or
// is longer.
bool ReadWholeFile(const std::string& path, std::size_t limit, std::string& content);

// The names of what lies in a folder, in the order in which the system gives them; empty when it cannot be
// read.
std::vector<std::string> ListFolder(const std::string& path);

// Creates a folder and those above it. True when it exists afterwards.
bool MakeFolder(const std::string& path);

}  // namespace platform
