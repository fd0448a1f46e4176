// One command at a time. A command that shows a dialog runs the message loop, in which further commands, or
// the end of the program, may arrive: they are dropped, or wait for its end.
//
//   const CommandScope command(gate);
//   if (!command.Entered()) return;  // another one runs
#pragma once

#include <functional>
#include <utility>

enum class CommandKind {
  kOfUser,
  kOfProgram,  // by itself: it leaves the keyboard where it is
};

class CommandGate {
 public:
  // Called at the end of each command; `closeWanted` says that MayClose was asked meanwhile.
  using WhenEnded = std::function<void(CommandKind kind, bool closeWanted)>;

  explicit CommandGate(WhenEnded whenEnded) : ended(std::move(whenEnded)) {}
  CommandGate(const CommandGate&) = delete;
  CommandGate& operator=(const CommandGate&) = delete;

  // Whether the frame may close. While a command runs it may not.
  [[nodiscard]] bool MayClose() {
    closeWanted = running;
    return !running;
  }
  // Whether the frame waits for the running command, which should not start anything over then.
  bool CloseWanted() const { return closeWanted; }

 private:
  friend class CommandScope;
  friend class WaitingScope;

  WhenEnded ended;
  bool running = false;
  bool waiting = false;
  bool closeWanted = false;
};

// A command, from its beginning to its end, whichever way out it takes. One of the program's own also runs
// inside one that only waits.
class CommandScope {
 public:
  explicit CommandScope(CommandGate& passed, CommandKind commandKind = CommandKind::kOfUser)
      : gate(passed),
        kind(commandKind),
        inside(kind == CommandKind::kOfProgram && std::exchange(gate.waiting, false)),
        entered(!std::exchange(gate.running, true) || inside) {}
  ~CommandScope() {
    if (!entered) return;
    gate.waiting = inside;
    if (inside) return;
    gate.running = false;
    gate.ended(kind, gate.closeWanted);
  }
  CommandScope(const CommandScope&) = delete;
  CommandScope& operator=(const CommandScope&) = delete;

  [[nodiscard]] bool Entered() const { return entered; }

 private:
  CommandGate& gate;
  const CommandKind kind;
  const bool inside;
  const bool entered;
};

// While the running command waits for the user, maybe for hours, and has nothing of the file in its hands.
class WaitingScope {
 public:
  explicit WaitingScope(CommandGate& passed, bool waits = true)
      : gate(passed), before(std::exchange(gate.waiting, waits)) {}
  ~WaitingScope() { gate.waiting = before; }
  WaitingScope(const WaitingScope&) = delete;
  WaitingScope& operator=(const WaitingScope&) = delete;

 private:
  CommandGate& gate;
  const bool before;
};
