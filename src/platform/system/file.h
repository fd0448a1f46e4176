// Files as the product uses them: opened for reading and writing by several copies at once, read and written
// in place, replaced whole by a rename. Nothing is cached here.
//
// Two byte-range locks far beyond any data ask the operating system what the file's own bytes cannot say:
// - in use: every open file holds a shared lock on one byte, so that FileInUse can tell, and a copy that died
//   counts as gone at once;
// - guard: a short exclusive lock on another byte around each read-modify-write of the file's bytes.
// Where such locks do not reach every machine that has the file (lock_reach.h), the guard is a lock file
// beside it (lock_file.h), the file is opened anew inside it, so that nothing is read from a stale cache, and
// nothing here can tell whether the file is in use.
//
// Every call that moves bytes goes on after a signal (EINTR) and after a partial transfer; a transfer that
// still comes out short, because the file ended or the disk is full, is reported as the number of bytes that
// were moved.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace platform {

struct ByteLock;
class LockFile;

// What opening, writing or replacing a file came to.
enum class FileResult {
  kDone,
  kMissing,        // there is none, or no folder for it
  kDenied,         // the rights do not allow it
  kIsFolder,       // a folder is at the path
  kNoRegularFile,  // a pipe, a socket or a device is
  kInUse,          // another process holds it exclusively (it is being replaced)
  kExists,         // something has the name that was to be new
  kDiskFull,       // no space is left, for this user or at all, or the file would grow beyond a limit
  kFailed,
};

// What a path names, compared with a file that was opened by it. kUnknown when that cannot be told.
enum class FileAtPath { kSame, kReplaced, kGone, kUnknown };

// What taking the guard came to.
enum class GuardResult {
  kHeld,
  kBusy,      // another process kept it for the whole wait: it is stopped or stuck
  kReplaced,  // the path names another file by now
  kGone,      // the path names nothing by now
  kFailed,    // the file is closed or only read, or the system failed
};

// What the system says of an open file. While nothing of it changes, the file has not been written to, but
// for writes in the same tick of the clock as the last one before them; the clock is that of whoever keeps
// the file.
struct FileState {
  std::uint64_t device = 0;
  std::uint64_t inode = 0;
  std::int64_t size = -1;
  std::int64_t writtenNs = 0;  // since 1970
  std::int64_t changedNs = 0;  // the same, of a time that nobody can set

  bool operator==(const FileState&) const = default;
};

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
  std::int64_t (*size)(int descriptor);                         // fstat's st_size, or -1
  int (*cut)(int descriptor, std::int64_t size);                // ftruncate
  int (*createNew)(const char* path, unsigned mode);            // open for writing, with O_CREAT and O_EXCL
  int (*remove)(const char* path);                              // unlink
  bool (*locksReach)(int descriptor);                           // AskLocksReach
  bool (*state)(int descriptor, bool fresh, FileState& state);  // statx; `fresh` trusts no cache
  std::int64_t (*nowMs)();  // of a clock that goes on while the machine sleeps
};

// The table in force. Tests assign to it and restore it.
FileCalls& SystemFileCalls();

// To be called first in main: a write beyond the size that the process may give a file (ulimit -f) then fails
// as on a full disk, and does not end the program.
void LetWritesBeyondLimitsFail();

// One open file. Movable, not copyable; closes itself. Created closed.
class File {
 public:
  File();
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
  // be closed. Where locks do not reach, this holds the guard for as long as the file is open, waits for it
  // like one, and does not tell whether others have the file open.
  FileResult OpenExclusive(const std::string& path);

  // OpenExclusive for a path at which there may be nothing yet: then kDone, with the file closed, and where
  // locks do not reach the name is held all the same.
  FileResult HoldPath(const std::string& path);

  // Creates a file for reading and writing, replacing any file at the path, and holds it exclusively. kInUse,
  // with the bytes at the path untouched, when somebody has that file open; kMissing when there is no such
  // folder; kFailed for a symbolic link, which is not followed. The file must be closed. Where locks do not
  // reach, the name must be one that nobody else uses.
  FileResult CreateExclusive(const std::string& path);

  // To be called now and then while one holds a file exclusively for a long time: false when it is not held
  // any more, because this process was stopped for too long. Nothing may be replaced then.
  bool KeepHold();

  // Closes a file that is held exclusively, and keeps hold of its path where a lock file does that: a file
  // system that hides open files first would have none at the path for an instant while it is replaced.
  void LetGoForRename();

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

  // Takes away everything from byte `size` on. The guard must be held, and still be: else, and on failure,
  // false.
  bool CutTo(std::int64_t size);

  // What the path that the file was opened by names now. A file that is replaced or gone can still be read
  // and written, and all that is written to it is lost with the last program that has it open.
  FileAtPath PathState() const;

  // Whether the path that the file was opened by could be opened for reading and writing now, as far as the
  // rights say.
  bool MayBeWritten() const;

  // Whether another path leads to this very file.
  bool IsAt(const std::string& otherPath) const;

  // PathState, and where locks do not reach the file is opened anew if it is still the same, so that what is
  // read next is what others have written. For who looks out for changes, once a look.
  FileAtPath Refresh();

  // What the last write or flush came to: kDone, kDiskFull or kFailed. A write that comes out short failed.
  FileResult LastWrite() const { return lastWrite; }

  // False on failure or when closed.
  [[nodiscard]] bool ReadState(FileState& state) const;

  // When the file was last written to, in seconds since 1970, by the clock of whoever keeps it; -1 on
  // failure.
  std::int64_t ChangedSeconds() const;

  // Whether anybody but this object has the file open, this process's other objects included. True also
  // where that cannot be told.
  bool UsedByOthers() const;

  // Brings everything written so far to the disk. False on failure or when closed.
  bool Flush();

  // Gives the file the owner, group, mode and access control list of another one: for a new file with the
  // contents of an old one, before they are in it. Where the system refuses the owner or the group, they are
  // named in the list. False when one of them could then no longer use the file, or one of the two is closed.
  [[nodiscard]] bool TakeRightsOf(const File& other);

  // Whether the locks on this file reach everybody who may have it open. If not, only the file's own bytes
  // can tell whether it is in use.
  bool LocksReach() const { return reach; }

 private:
  friend class FileGuard;
  FileResult OpenInto(const std::string& openPath, int flags, const ByteLock& lock);
  GuardResult HoldLockFile(const std::string& target);
  GuardResult Reopen();

  int descriptor = -1;
  int openFlags = 0;
  bool reach = true;
  std::string path;  // as it was opened
  std::uint64_t device = 0;
  std::uint64_t inode = 0;
  std::unique_ptr<LockFile> hold;  // the guard, where locks do not reach
  FileResult lastWrite = FileResult::kDone;
};

// Holds the guard of a file for a scope, while the path names that file. Not recursive: never hold two on one
// file in one process, nor one on a file that this process has open exclusively.
class FileGuard {
 public:
  // Waits at most two seconds for it (SetGuardPatience where it is a lock file).
  explicit FileGuard(File& file);
  ~FileGuard();
  FileGuard(const FileGuard&) = delete;
  FileGuard& operator=(const FileGuard&) = delete;

  // Write nothing unless it is held.
  GuardResult Result() const { return result; }
  bool Held() const { return result == GuardResult::kHeld; }

 private:
  void TakeLockFile();

  File& guarded;
  GuardResult result = GuardResult::kFailed;
  bool locked = false;
};

// True when a file, or anything else, is found at the path.
bool FileExists(const std::string& path);

// True when the file cannot be had for oneself alone: somebody, this process included, has it open, it may
// not be written, or it does not exist. Where locks do not reach, users of the file do not show.
bool FileInUse(const std::string& path);

// Puts `size` bytes at `path` so that the path always names one whole file: writes a new file beside it,
// flushes it, renames it over the old one and flushes the folder. On failure the old file is untouched and
// the new one is gone. The new file has the rights of the old one (TakeRightsOf); a file that may not be
// written, or whose owner would lose it, is not replaced. Where the path is a symbolic link, the
// file it leads to is replaced and the link stays.
bool ReplaceFile(const std::string& path, const void* data, std::size_t size);

// The same, but only where nothing is at `path`: of several processes that do this at the same instant, one
// makes the file and the others get kExists, so that nobody's file is lost. On a file system that can neither
// rename without replacing nor link, the test and the rename are two steps. The file has the rights of the
// one at `beside`, if one is named and there (TakeRightsOf).
[[nodiscard]] FileResult WriteNewFile(const std::string& path, const void* data, std::size_t size,
                                      const std::string& beside = {});

// Makes the file at `path` readable and writable by its user alone, and an empty one where there is none. A
// link is followed. False when that cannot be had.
[[nodiscard]] bool MakePrivateFile(const std::string& path);

// Gives the file `from`, which its writer has flushed, the name `to` in one step: a file that had the name is
// gone, its rights pass to the new one as in ReplaceFile, and the folder is flushed.
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

// 32 random hexadecimal digits, for a name that nobody else gives to a file.
std::string RandomName();

// Reads a whole file of at most `limit` bytes into `content`. False (content empty) when it cannot be read or
// is longer.
bool ReadWholeFile(const std::string& path, std::size_t limit, std::string& content);

// The names of what lies in a folder, in the order in which the system gives them; empty when it cannot be
// read.
std::vector<std::string> ListFolder(const std::string& path);

// Creates a folder and those above it. True when it exists afterwards.
bool MakeFolder(const std::string& path);

}  // namespace platform
