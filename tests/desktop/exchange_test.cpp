// The dialogs by which appointments go out and come in: export, report with preview and paper, import.
#include <gtest/gtest.h>

#include "core/ini_file.h"
#include "core/time_texts.h"
#include "desktop/picker_steps.h"
#include "exchange/export_dialog.h"
#include "exchange/ical_plan_dialog.h"
#include "exchange/import_wizard.h"
#include "exchange/report_dialog.h"
#include "exchange/report_pages.h"
#include "platform/desktop/font.h"
#include "platform/system/file.h"
#include "shell/commands.h"
#include "support/calendar_program.h"
#include "support/recording_dc.h"
#include "support/temporary_calendar.h"
#include "support/windows.h"

namespace tests {
namespace {

constexpr const char* kSuccess = "Operation successful.";

class Exchange : public testing::Test {
 protected:
  Exchange() {
    calendar.Add(Entry("Dentist").On(14, 3, 2004).At(9, 30).Notes("\x80 40"));
    calendar.Add(Entry("Lunch, \"late\"").On(14, 3, 2004).At(13, 0).Category("Home"));
    calendar.Add(Entry("Lunch in May").On(20, 5, 2004).AllDay());
  }
  // The lines of the report or export without their line ends.
  static std::string Text(const std::string& path) {
    std::string text;
    platform::ReadWholeFile(path, 1 << 20, text);
    return text;
  }
  void Command(unsigned id) { SendMessage(program.Frame(), WM_COMMAND, id, 0); }
  // Exports with the choices that the dialog is left with, to a box that begins or ends with `box`.
  void Export(const std::string& path, const std::string& box, const std::function<void(HWND)>& choose = {}) {
    driver.WhenDialogOpens([=, this](HWND dialog) {
      if (choose) choose(dialog);
      driver.TypeInto(dialog, ExportDialog::kFileEdit, path);
      driver.AnswerMessageBox(box, IDOK);
      driver.ClickControl(dialog, ExportDialog::kExportButton);
    });
    Command(ID_EXPORT);
  }

  CalendarProgram program;
  DesktopDriver& driver = program.driver;
  TemporaryCalendar calendar;
  TemporaryFolder folder;
  const std::string today = core::FormatDate(14, 3, 2004);
};

TEST_F(Exchange, ExportWritesWhatIsChosenAndSaysWhatWentWrong) {
  const std::string names =
      "\"Date\",\"Start Time\",\"End Time\",\"Category\",\"All day event\",\"Subject\",\"Notes\"\r\n";
  const std::string path = folder.Join("lunch.csv");
  program.Run(calendar.Path(), [&] {
    Export(path, kSuccess, [&](HWND dialog) {
      EXPECT_TRUE(IsDlgButtonChecked(dialog, RangeDialog::kAllRadio));
      EXPECT_EQ(TextOf(dialog, RangeDialog::kFromButton), today);
      for (const int id : {RangeDialog::kFromButton, RangeDialog::kToButton, RangeDialog::kSubjectEdit})
        EXPECT_FALSE(Enabled(dialog, id)) << id;
      driver.ClickControl(dialog, RangeDialog::kDatesRadio);
      driver.WhenDialogOpens([&](HWND picker) { PickMonth(driver, picker, 1); });
      driver.AnswerMessageBox("From date must be earlier than the To date.", IDOK);
      driver.ClickControl(dialog, RangeDialog::kFromButton);
      EXPECT_EQ(TextOf(dialog, RangeDialog::kFromButton), today);
      driver.WhenDialogOpens([&](HWND picker) { PickMonth(driver, picker, 1); });
      driver.ClickControl(dialog, RangeDialog::kToButton);
      EXPECT_EQ(TextOf(dialog, RangeDialog::kToButton), core::FormatDate(14, 4, 2004));
      driver.ClickControl(dialog, RangeDialog::kSubjectBox);
      EXPECT_EQ(GetFocus(), GetDlgItem(dialog, RangeDialog::kSubjectEdit));
      driver.TypeInto(dialog, RangeDialog::kSubjectEdit, "LUNCH");
    });
    const std::string one = core::FormatTime(1, 0, core::kAfterNoon);
    EXPECT_EQ(Text(path), names + "\"" + today + "\",\"" + one + "\",\"" + one +
                              "\",\"Home\",\"0\",\"Lunch, \"late\"\",\"\"\r\n");
    std::string setting;
    core::IniFile().ReadString("Preference", "ExportFile", setting);
    EXPECT_EQ(setting, path);

    const std::string before = calendar.Bytes();
    for (const std::string& bad : {folder.Path(), folder.Join("no/such.csv"), calendar.Path()}) {
      Export(bad, std::string("\r\n") + kSuccess, [&](HWND dialog) {
        EXPECT_TRUE(IsDlgButtonChecked(dialog, RangeDialog::kAllRadio));
        EXPECT_EQ(TextOf(dialog, RangeDialog::kToButton), core::FormatDate(14, 4, 2004)) << "kept";
      });
    }
    EXPECT_EQ(calendar.Bytes(), before);
  });
}

TEST_F(Exchange, ReportIsMadeShownAndPrinted) {
  const std::string path = CalendarProgramFolder() + "/report.txt";
  const std::string pdf = folder.Join("report.pdf");
  program.Run(calendar.Path(), [&] {
    driver.Click(program.List(), program.RowPoint(1));
    driver.WhenDialogOpens([&](HWND dialog) {
      const HWND preview = GetDlgItem(dialog, ReportDialog::kPreviewEdit);
      const int height = Height(PlaceOf(dialog));
      EXPECT_TRUE(IsDlgButtonChecked(dialog, RangeDialog::kDatesRadio));
      EXPECT_TRUE(Enabled(dialog, RangeDialog::kFromButton));
      EXPECT_FALSE(Enabled(dialog, ReportDialog::kPrintButton));
      EXPECT_FALSE(IsWindowVisible(preview));
      driver.ClickControl(dialog, ReportDialog::kMakeButton);
      EXPECT_EQ(Text(path).find("Tempoline Report (from " + today + " to " + today + ")\r\n\r\nSunday, "),
                0U);
      EXPECT_NE(Text(path).find("\r\nNotes: \x80 40\r\n"), std::string::npos);
      EXPECT_EQ(TextOf(dialog, ReportDialog::kPreviewEdit), Text(path));
      EXPECT_TRUE(IsWindowVisible(preview));
      EXPECT_GT(Height(PlaceOf(dialog)), height + 100);

      driver.ClickControl(dialog, RangeDialog::kRecordRadio);
      driver.ClickControl(dialog, ReportDialog::kMakeButton);
      EXPECT_EQ(TextOf(dialog, ReportDialog::kPreviewEdit), Text(path));
      EXPECT_NE(Text(path).find("Subject: Lunch, \"late\"\r\n"), std::string::npos);
      EXPECT_EQ(Text(path).find("Dentist"), std::string::npos);
      driver.ChooseFile(pdf);
      driver.ClickControl(dialog, ReportDialog::kPrintButton);
    });
    driver.Press(program.List(), 'P', MK_CONTROL);
    EXPECT_EQ(Text(pdf).substr(0, 5), "%PDF-");

    driver.Press(program.List(), VK_ESCAPE);
    driver.WhenDialogOpens([&](HWND dialog) {
      EXPECT_FALSE(Enabled(dialog, RangeDialog::kRecordRadio)) << "none is selected";
      driver.Press(dialog, VK_ESCAPE);
    });
    Command(ID_PRINT);
  });
}

TEST_F(Exchange, ImportAsksStepByStepAndKeepsWhatWasChosen) {
  const std::string file = folder.Write(
      "in.csv",
      "\"What\",\"Date\",\"Start Time\",\"Place\"\r\n\"Choir, all\",\"3/14/2004\",\"8:15\",\"Hall\"\r\n"
      "\"Broken\",\"soon\",\"8:15\",\"\"\r\n");
  const auto mapping = [](HWND dialog) {
    std::string all;
    for (WPARAM row = 0; row < 4; ++row) {
      char name[40] = "";
      SendDlgItemMessage(dialog, ImportWizard::kTargetList, LB_GETTEXT, row, reinterpret_cast<LPARAM>(name));
      all += std::string(name) + "|";
    }
    return all;
  };
  const auto shows = [](HWND dialog, int page) {
    for (const int id : {ImportWizard::kFilePage, ImportWizard::kFormatPage, ImportWizard::kMapPage})
      EXPECT_EQ(IsWindowVisible(GetDlgItem(dialog, id)), id == page) << id;
  };
  program.Run(calendar.Path(), [&] {
    driver.WhenDialogOpens([&](HWND dialog) {
      const auto next = [&] { driver.ClickControl(dialog, ImportWizard::kNextButton); };
      const auto back = [&] { driver.ClickControl(dialog, ImportWizard::kBackButton); };
      shows(dialog, ImportWizard::kFilePage);
      for (const auto& [bad, text] :
           {std::pair<std::string, const char*>{folder.Join("none"), "Import file could not be found."},
            {folder.Path(), "folder"},
            {calendar.Path(), "It is the calendar"}}) {
        driver.TypeInto(dialog, ImportWizard::kFileEdit, bad);
        driver.AnswerMessageBox(text, IDOK);
        next();
        shows(dialog, ImportWizard::kFilePage);
      }
      driver.TypeInto(dialog, ImportWizard::kFileEdit, file);
      next();
      shows(dialog, ImportWizard::kFormatPage);
      EXPECT_EQ(TextOf(dialog, ImportWizard::kContentsEdit), Text(file));
      for (const int id : {ImportWizard::kYesRadio, ImportWizard::kCommaRadio})
        EXPECT_TRUE(IsDlgButtonChecked(dialog, id)) << id;
      driver.ClickControl(dialog, ImportWizard::kTabRadio);
      next();
      EXPECT_EQ(SendDlgItemMessage(dialog, ImportWizard::kSourceList, LB_GETCOUNT, 0, 0), 1);
      back();
      EXPECT_TRUE(IsDlgButtonChecked(dialog, ImportWizard::kTabRadio)) << "kept";
      driver.ClickControl(dialog, ImportWizard::kCommaRadio);
      next();
      shows(dialog, ImportWizard::kMapPage);
      EXPECT_EQ(TextOf(dialog, ImportWizard::kNextButton), "&Finish");
      EXPECT_EQ(mapping(dialog), "Date|Start Time|End Time|Category|");
      driver.ClickControl(dialog, ImportWizard::kDefaultMapButton);
      EXPECT_EQ(mapping(dialog), "IGNORE THIS FIELD|Date|Start Time|IGNORE THIS FIELD|");
      // The first row becomes "Subject", by the keyboard.
      SetFocus(GetDlgItem(dialog, ImportWizard::kTargetList));
      driver.Press(dialog, VK_HOME);
      EXPECT_EQ(SendDlgItemMessage(dialog, ImportWizard::kSourceList, LB_GETCURSEL, 0, 0), 0);
      SetFocus(GetDlgItem(dialog, ImportWizard::kFieldBox));
      driver.Press(dialog, VK_UP);
      driver.Press(dialog, VK_UP);
      back();
      next();
      EXPECT_EQ(mapping(dialog), "Subject|Date|Start Time|IGNORE THIS FIELD|") << "kept";
      driver.AnswerMessageBox("2 appointments were added. 1 line could not be completed.", IDOK);
      next();
    });
    Command(ID_IMPORT);
    EXPECT_EQ(program.Subjects(), (std::vector<std::string>{"Dentist", "Lunch, \"late\"", "Choir, all"}));
    std::string setting;
    core::IniFile().ReadString("Preference", "ImportFile", setting);
    EXPECT_EQ(setting, file);
  });
}

TEST_F(Exchange, ICalendarGoesOutAndComesInOnceItsPlanIsSeen) {
  const std::string out = folder.Join("out.ICS");
  const std::string in =
      folder.Write("in.ics",
                   "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nBEGIN:VEVENT\r\nUID:1\r\nDTSTART:20040314T181200\r\n"
                   "SUMMARY:Choir\r\nEND:VEVENT\r\nBEGIN:VTODO\r\nUID:2\r\nEND:VTODO\r\nEND:VCALENDAR\r\n");
  const auto import = [&](const std::function<void(HWND plan)>& look) {
    driver.WhenDialogOpens([=, this](HWND wizard) {
      driver.TypeInto(wizard, ImportWizard::kFileEdit, in);
      driver.WhenDialogOpens(look);
      driver.ClickControl(wizard, ImportWizard::kNextButton);
    });
    Command(ID_IMPORT);
  };
  program.Run(calendar.Path(), [&] {
    Export(out, kSuccess);
    EXPECT_NE(Text(out).find("SUMMARY:Lunch\\, \"late\"\r\n"), std::string::npos);
    import([&](HWND plan) {
      const std::string counts = TextOf(plan, IcalPlanDialog::kCountsText);
    EXPECT_TRUE(counts.starts_with("1 appointment would be added.")) << counts;
    EXPECT_NE(counts.find("Left out: 1 task."), std::string::npos) << counts;
    EXPECT_EQ(SendDlgItemMessage(plan, IcalPlanDialog::kList, LB_GETCOUNT, 0, 0), 3);
    driver.AnswerMessageBox("1 appointment was added.", IDOK);
    driver.ClickControl(plan, IcalPlanDialog::kImportButton);
  });
  EXPECT_EQ(program.Subjects(), (std::vector<std::string>{"Dentist", "Lunch, \"late\"", "Choir"}));
    import([&](HWND plan) {
      EXPECT_FALSE(Enabled(plan, IcalPlanDialog::kImportButton)) << "it is there already";
    driver.ClickControl(plan, IDCANCEL);
});
});
}

TEST(ReportPages, HaveTheTitleAndLoseNothing) {
  const DesktopDriver driver;  // fonts are those of a running program
  const HFONT font = CreateFont({"Verdana", -11, 400, false});
  const int line = GetTextMetrics(font).height + GetTextMetrics(font).externalLeading;
  const int width = MeasureText(font, "one two three").cx;
  ReportPages pages("Title\r\n\r\na\r\nb\r\n\r\nc\r\nd\r\n\r\none two three four\r\n" + std::string(40, 'W'),
                    font);
  using Lines = std::vector<std::string>;
  ASSERT_GE(pages.LayOut({width, 6 * line}), 4);
  EXPECT_EQ(pages.Lines(1), (Lines{"a", "b"})) << "what belongs together stays together";
  EXPECT_EQ(pages.Lines(2), (Lines{"c", "d"}));
  EXPECT_EQ(pages.Lines(3)[0] + "|" + pages.Lines(3)[1], "one two three|four");
  const int count = pages.LayOut({width, 1});
  std::string all;
  for (int page = 1; page <= count; ++page) {
    ASSERT_EQ(pages.Lines(page).size(), 1U) << "at least a line";
    all += pages.Lines(page)[0];
  }
  EXPECT_EQ(all, "abcdone two threefour" + std::string(40, 'W'));
  RecordingDc dc;
  pages.Paint(&dc, 2);
  EXPECT_EQ(dc.calls[0].text, "Title");
  EXPECT_EQ(dc.calls[1].text, "Page 2 of " + std::to_string(count));
  EXPECT_EQ(dc.calls.back().text, "b");
  EXPECT_EQ(ReportPages("", font).LayOut({width, 100}), 1);
  DeleteFont(font);
}

}  // namespace
}  // namespace tests
