// How running copies of the program, of one user on one machine, find each other: a runtime folder
// ($XDG_RUNTIME_DIR/daybrix, else /tmp/daybrix-<user id>, mode 0700) with a lock file that tells whether a
// copy runs and one datagram socket for each copy.
#pragma once

#include <cstdint>
#include <string>

namespace platform {

// Holds `name` for this process until it ends. False when another process holds it, or when there is no
// folder to hold it in. `name` is used as part of a file name and has no slash.
bool HoldInstance(const std::string& name);
// Whether this process does.
bool HoldsInstance(const std::string& name);

// This copy's place among the others. Open it once, at start.
class RunningCopies {
 public:
  RunningCopies() = default;
  ~RunningCopies();
  RunningCopies(const RunningCopies&) = delete;
  RunningCopies& operator=(const RunningCopies&) = delete;

  // Makes this copy's socket. False when the runtime folder cannot be used; the copy is then alone.
  bool Open();

  // Readable when a notice is waiting; -1 when not open. Owned by this object.
  int Descriptor() const { return descriptor; }

  // Whether another copy runs.
  bool Others() const;

  // Sends a notice to every other copy: a number whose meaning is the copies' affair. Never waits: a copy
  // that left its last notices lying until its socket was full misses this one. Sockets of copies that died
  // are removed.
  void Broadcast(std::int32_t code);

  // Takes one waiting notice. False when none waits. A datagram of any other form is thrown away.
  bool Receive(std::int32_t& code);

 private:
  int descriptor = -1;
  std::string path;  // of this copy's socket
};

}  // namespace platform
