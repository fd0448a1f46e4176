// What a user meets, from the start of the program to the bytes in the file.
#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <vector>

#include "core/calendar/appointment.h"
#include "core/calendar/categories.h"
#include "core/store/record_file.h"
#include "core/store/text_field.h"
#include "end_to_end/running_program.h"
#include "end_to_end/virtual_display.h"
#include "support/temporary_calendar.h"
#include "support/temporary_folder.h"
#include "support/wait_until.h"

namespace {

using tests::RunningProgram;
using tests::WaitUntil;

constexpr const char* kFrame = "Daybrix";
constexpr const char* kEditor = "Tempoline";
constexpr int kHeader = 12;
constexpr std::size_t kFirstSlot = 2625;
constexpr std::size_t kSlot = 2627;

class EndToEnd : public testing::Test {
 protected:
  // A calendar without records in the test's folder.
  std::string NewCalendar() {
    tests::TemporaryCalendar empty;
    empty.file.Close();
    return folder.Write("shared.cld", empty.Bytes());
  }
  // The calendar's bytes, read as any program could.
  core::HeaderBlock Header() {
    core::HeaderBlock header;
    const std::string bytes = folder.Read("shared.cld");
    EXPECT_GE(bytes.size(), kFirstSlot);
    std::memcpy(&header, bytes.data() + kHeader, sizeof header);
    return header;
  }
  std::vector<core::Appointment> Slots() {
    const std::string bytes = folder.Read("shared.cld");
    std::vector<core::Appointment> slots;
    for (std::size_t at = kFirstSlot; at + kSlot <= bytes.size(); at += kSlot) {
      std::memcpy(&slots.emplace_back(), bytes.data() + at, kSlot);
    }
    return slots;
  }
  // Adds an appointment through the editor.
  void Insert(const RunningProgram& program, const std::string& frame, const std::string& subject) {
    display.Press(frame, "Insert");
    const std::string editor = display.WaitForWindow(program.Process(), kEditor);
    display.Type(editor, subject);
    display.Press(editor, "Return");
    display.WaitForNoWindow(program.Process(), kEditor);
  }

  tests::VirtualDisplay display;
  tests::TemporaryFolder folder;
};

TEST_F(EndToEnd, TheFirstStartMakesTheDefaultCalendarWithItsExamples) {
  RunningProgram program(display.Name(), folder.Path(), "", "2033-01-01T08:00:00");
  const std::string frame = display.WaitForWindow(program.Process(), kFrame);
  {
    // One copy is enough when no file is named. The second one brings its window to the front.
    const RunningProgram other(display.Name(), folder.Path(), NewCalendar());
    const std::string otherFrame = display.WaitForWindow(other.Process(), kFrame);
    const auto inFront = [&] {
      const std::string all = tests::Shell("DISPLAY=" + display.Name() +
                                           " xdotool search --onlyvisible --name '^" + kFrame + "$'");
      return all.substr(all.rfind('\n') + 1);
    };
    ASSERT_TRUE(WaitUntil([&] { return inFront() == otherFrame; }, 3000));
    RunningProgram second(display.Name(), folder.Path(), "");
    EXPECT_EQ(second.ExitCode(), 0);
    EXPECT_TRUE(WaitUntil([&] { return inFront() == frame; }, 3000));
  }
  EXPECT_EQ(program.Close(), 0);
  const std::string bytes = folder.Read("works/tempoline.cld");
  ASSERT_EQ(bytes.size(), kFirstSlot + 3 * kSlot);
  core::Appointment last;
  std::memcpy(&last, bytes.data() + kFirstSlot + 2 * kSlot, kSlot);
  EXPECT_EQ(core::ReadText(last.subject), "Brightfold Ltd.");
  EXPECT_EQ(tests::Value(last.date.year), 2033);
  core::HeaderBlock header;
  std::memcpy(&header, bytes.data() + kHeader, sizeof header);
  EXPECT_EQ(tests::Value(header.openCount), 0U);
  EXPECT_NE(folder.Read("tempoline.ini").find("DefaulFile="), std::string::npos);
}

TEST_F(EndToEnd, AnAppointmentIsAddedEditedAndDeletedByKeyboard) {
  const std::string path = NewCalendar();
  RunningProgram program(display.Name(), folder.Path(), path);
  const std::string frame = display.WaitForWindow(program.Process(), kFrame);
  Insert(program, frame, "Dentist");
  ASSERT_TRUE(WaitUntil([&] { return Slots().size() == 1; }, 5000));
  core::Appointment added = Slots()[0];
  EXPECT_EQ(core::ReadText(added.subject), "Dentist");
  EXPECT_EQ(core::DayIndex(added.date), core::DayIndex(2004, 3, 14));
  EXPECT_EQ(core::TimeSlot(added.startTime), 10 * 12 + 8);
  EXPECT_EQ(added.header.inUse, 1);
  EXPECT_EQ(added.header.editLock, 0);

  display.Press(frame, "Return");
  const std::string editor = display.WaitForWindow(program.Process(), kEditor);
  EXPECT_EQ(Slots()[0].header.editLock, 1);
  display.Press(editor, "End");
  display.Type(editor, " at ten");
  display.Press(editor, "Return");
  ASSERT_TRUE(WaitUntil([&] { return core::ReadText(Slots()[0].subject) == "Dentist at ten"; }, 5000));
  display.WaitForNoWindow(program.Process(), kEditor);
  EXPECT_EQ(tests::Value(Slots()[0].header.recordId), tests::Value(added.header.recordId));
  ASSERT_TRUE(WaitUntil([&] { return Slots()[0].header.editLock == 0; }, 5000));

  display.Press(frame, "Delete");
  ASSERT_TRUE(WaitUntil(
      [&] { return display.Windows(program.Process(), kFrame).find('\n') != std::string::npos; }, 5000));
  display.Press(tests::Shell("DISPLAY=" + display.Name() + " xdotool getwindowfocus"), "Return");
  ASSERT_TRUE(WaitUntil([&] { return Slots()[0].header.inUse == 0; }, 5000));
  ASSERT_TRUE(WaitUntil([&] { return Header().freeSlotBalance == -1; }, 5000));
  EXPECT_EQ(program.Close(), 0);
  EXPECT_EQ(tests::Value(Header().openCount), 0U);
}

TEST_F(EndToEnd, ADragOntoTheMiniCalendarMovesAndWithCtrlCopies) {
  const std::string path = NewCalendar();
  RunningProgram program(display.Name(), folder.Path(), path);
  const std::string frame = display.WaitForWindow(program.Process(), kFrame);
  Insert(program, frame, "Wandering");
  // The panel lies behind the frame (4, 23) and the bars (17, 66), 373 pixels wide. The row, and a day's cell
  // in it:
  constexpr int kPanelX = 21;
  constexpr int kPanelY = 89;
  constexpr int kRowX = kPanelX + 60;
  constexpr int kRowY = kPanelY + 48;
  const auto cell = [](int day) {
    const int index = day - 1 + 1;  // 1 March 2004 is a Monday
    return std::pair(kPanelX + 373 - 110 + index % 7 * 15 + 7, kPanelY + 35 + 29 + index / 7 * 14 + 7);
  };
  display.Drag(frame, kRowX, kRowY, cell(17).first, cell(17).second);
  ASSERT_TRUE(WaitUntil([&] { return Slots()[0].date.day == 17; }, 5000));
  display.Drag(frame, kRowX, kRowY, cell(19).first, cell(19).second, "ctrl");
  ASSERT_TRUE(WaitUntil([&] { return Slots().size() == 2; }, 5000));
  EXPECT_EQ(tests::Value(Slots()[0].date.day), 17);
  EXPECT_EQ(tests::Value(Slots()[1].date.day), 19);
  EXPECT_NE(tests::Value(Slots()[0].header.recordId), tests::Value(Slots()[1].header.recordId));
}

TEST_F(EndToEnd, TwoCopiesSeeEachOther) {
  const std::string path = NewCalendar();
  RunningProgram first(display.Name(), folder.Path(), path);
  const std::string firstFrame = display.WaitForWindow(first.Process(), kFrame);
  RunningProgram second(display.Name(), folder.Path(), path);
  const std::string secondFrame = display.WaitForWindow(second.Process(), kFrame);
  ASSERT_TRUE(WaitUntil([&] { return Header().openCount == 2; }, 5000));
  // Side by side, so that each picture is the window's own.
  tests::Shell("DISPLAY=" + display.Name() + " xdotool windowmove --sync " + secondFrame + " 520 200");
  ASSERT_TRUE(WaitUntil([&] { return !display.Picture(secondFrame).empty(); }, 3000));
  const std::string before = display.Picture(secondFrame);
  Insert(first, firstFrame, "Seen by both");
  EXPECT_TRUE(WaitUntil([&] { return display.Picture(secondFrame) != before; }, 5000))
      << "the second copy did not notice";

  // What one edits the other may not.
  display.Press(firstFrame, "Return");
  const std::string editor = display.WaitForWindow(first.Process(), kEditor);
  display.Press(secondFrame, "Home Down Return");
  EXPECT_TRUE(WaitUntil(
      [&] { return display.Windows(second.Process(), kFrame).find('\n') != std::string::npos; }, 5000))
      << "no refusal";
  EXPECT_EQ(display.Windows(second.Process(), kEditor), "");

  // A copy that dies with its editor open leaves a file that reads well.
  first.Kill();
  EXPECT_EQ(second.Close(), 0);
  EXPECT_EQ(Slots().size(), 1U);
  EXPECT_EQ(core::ReadText(Slots()[0].subject), "Seen by both");
  RunningProgram third(display.Name(), folder.Path(), path);
  display.WaitForWindow(third.Process(), kFrame);
  EXPECT_EQ(third.Close(), 0);
  EXPECT_FALSE(editor.empty());
}

TEST_F(EndToEnd, KeysCountByTheirPlaceWhereAKeyboardTypesSomethingElse) {
  RunningProgram program(display.Name(), folder.Path(), NewCalendar());
  const std::string frame = display.WaitForWindow(program.Process(), kFrame);
  const auto useLayout = [&](const std::string& layout) {
    tests::Shell("DISPLAY=" + display.Name() + " setxkbmap " + layout);
  };
  useLayout("ru");  // not before: a display without clients would forget it
  display.Press(frame, "ctrl+Cyrillic_te");
  const std::string dialog = display.WaitForWindow(program.Process(), "Create New File");
  display.Press(dialog, "Escape");
  display.WaitForNoWindow(program.Process(), "Create New File");
  useLayout("fr");
  const std::string before = display.Picture(frame);
  display.Press(frame, "alt+ampersand");
  EXPECT_TRUE(WaitUntil([&] { return display.Picture(frame) != before; }, 5000));
  EXPECT_EQ(program.Close(), 0);
  EXPECT_NE(folder.Read("tempoline.ini").find("PaneId=0"), std::string::npos);
}

}  // namespace
