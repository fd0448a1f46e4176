// The small window that shows how far a long piece of work is: a line of text and a bar. The work calls
// Step() for every step it did; the window stays alive through it and takes the input away from all others,
// so that nobody acts on what is being worked on.
//
//   ProgressWindow progress;
//   progress.Begin(owner, "Compacting \"team.cld\"", slots);
//   for (...) { ...; progress.Step(); }
#pragma once

#include <cstdint>
#include <string>

#include "framework/zarf_dialog.h"

class ProgressWindow : public ZarfDialog {
 public:
  // Closes.
  ~ProgressWindow() override;

  // Opens over `owner` (may be null; it must outlive the window), with a line in UTF-8 and a bar of so many
  // steps.
  void Begin(ZarfWnd* owner, const std::string& text, std::uint32_t steps);
  // For work that counts by itself and can be cancelled: with a title and a button "Cancel".
  void BeginCancellable(ZarfWnd* owner, const std::string& title, const std::string& text);
  // So much of the whole is done; false once the user has cancelled. As cheap as Step.
  [[nodiscard]] bool Advance(std::int64_t doneSoFar, std::int64_t whole);
  // One step is done. Costs next to nothing unless the bar grows by a pixel; then the window is painted, and
  // the messages that wait are handled (RunWaitingMessages).
  void Step();
  // Gives the keyboard back to the owner, if this program has it. Does nothing when closed.
  void Close();

  // Beside the rest, for the work to go on.
  int Open(ZarfWnd* owner, int templateId) override;
  LRESULT OnInitDialog(const MessageRecord& record) override;
  // Neither Escape nor the window's button end the work, unless it can be cancelled.
  LRESULT OnCommand(const MessageRecord& record) override;

 private:
  void Grow(std::uint64_t pixels);

  ZarfWnd* dialogOwner = nullptr;
  bool cancellable = false;
  bool cancelled = false;
  std::int64_t nextLookMs = 0;  // platform::TickMs: when the user is heard again
  std::uint64_t steps = 1;
  std::uint64_t done = 0;
  std::uint64_t barWidth = 0;  // pixels
  std::uint64_t shown = 0;     // pixels of the bar that are filled
};
