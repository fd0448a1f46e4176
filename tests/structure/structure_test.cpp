// The tree keeps the rules of docs/architecture.md, and each rule is shown to fail on a file that breaks it.
#include <filesystem>
#include <functional>
#include <set>

#include "gtest/gtest.h"
#include "structure/structure_rules.h"
#include "support/source_folder.h"
#include "support/temporary_folder.h"

namespace tests {
namespace {

using Rule = std::function<Findings(const SourceFile&)>;

const std::vector<SourceFile>& Project() {
  static const std::vector<SourceFile> files = ReadProject(tests::SourceFolder());
  return files;
}

void ExpectTreeKeeps(const Rule& rule) {
  for (const SourceFile& file : Project()) {
    for (const std::string& finding : rule(file)) ADD_FAILURE() << finding;
  }
}

void ExpectKept(const Rule& rule, const std::vector<SourceFile>& files) {
  for (const SourceFile& file : files) EXPECT_EQ(rule(file), Findings()) << file.path << "\n" << file.text;
}

void ExpectBroken(const Rule& rule, const std::vector<SourceFile>& files) {
  for (const SourceFile& file : files) EXPECT_EQ(rule(file).size(), 1U) << file.path << "\n" << file.text;
}

std::string Include(const std::string& name) {
  return "#pragma once\n#include <string>\n#include \"" + name + "\"\n";
}

std::string Lines(std::size_t count) {
  std::string text;
  while (count-- > 0) text += "    Work();\n";
  return text;
}

TEST(Structure, TheWholeTreeIsLookedAt) {
  std::set<std::string> paths;
  for (const SourceFile& file : Project()) paths.insert(file.path);
  for (const char* path :
       {"src/main.cpp", "src/platform/desktop/qt/mouse.cpp", "tests/CMakeLists.txt", ".ci/run"}) {
    EXPECT_TRUE(paths.contains(path)) << path;
  }

  const TemporaryFolder folder;
  std::filesystem::create_directories(folder.Join("build/src"));
  std::filesystem::create_directories(folder.Join("src/build"));
  folder.Write("build/src/a.cpp", "generated");
  folder.Write("b.bin", std::string("a\0b", 3));
  folder.Write("src/build/c.cpp", "text");
  const std::vector<SourceFile> files = ReadProject(folder.Path());
  ASSERT_EQ(files.size(), 1U);
  EXPECT_EQ(files[0].path, "src/build/c.cpp");
  EXPECT_EQ(files[0].text, "text");
}

TEST(Structure, IncludesPointDownwards) {
  ExpectKept(UpwardIncludes, {{"src/calendar/a.cpp", Include("calendar/b.h")},
                              {"src/calendar/a.cpp", Include("platform/desktop/window.h")},
                              {"src/main.cpp", Include("calendar/b.h")},
                              {"src/calendar/a.cpp", Include("calendar/views/b.h")},
                              {"src/calendar/views/a.cpp", Include("calendar/dialogs/b.h")},
                              {"src/core/calendar/a.h", Include("core/store/b.h")},
                              {"src/core/store/a.h", Include("core/date_time.h")},
                              {"src/core/a.h", Include("platform/system/file.h")},
                              {"src/core/a.h", Include("resources/strings.h")},
                              {"src/cli/a.h", Include("resources/text_ids.h")},
                              {"src/cli/a.h", Include("core/store/result.h")},
                              {"src/platform/desktop/qt/a.cpp", Include("platform/system/code_page.h")}});
  ExpectBroken(UpwardIncludes, {{"src/core/a.h", Include("framework/drawing.h")},
                                {"src/core/a.h", Include("platform/desktop/types.h")},
                                {"src/core/a.h", Include("resources/resources.h")},
                                {"src/cli/a.h", Include("platform/desktop/types.h")},
                                {"src/cli/a.h", Include("framework/drawing.h")},
                                {"src/calendar/a.h", Include("cli/cli.h")},
                                {"src/calendar/views/a.h", Include("calendar/calendar_panel.h")},
                                {"src/calendar/dialogs/a.h", Include("calendar/views/b.h")},
                                {"src/core/store/a.h", Include("core/calendar/b.h")},
                                {"src/core/a.h", Include("core/store/b.h")},
                                {"src/core/attic/a.h", Include("core/date_time.h")},
                                {"src/shell/a.h", Include("pickers/date_picker.h")},
                                {"src/platform/system/a.h", Include("platform/desktop/types.h")},
                                {"src/platform/desktop/a.h", Include("resources/strings.h")},
                                {"src/controls/a.cpp", Include("list.h")},
                                {"src/attic/a.cpp", Include("core/date_time.h")}});
  ExpectTreeKeeps(UpwardIncludes);
}

TEST(Structure, IncludesFormNoCircle) {
  const SourceFile last = {"src/shell/c.h", Include("shell/a.h")};
  const std::vector<SourceFile> line = {{"src/shell/a.h", Include("core/d.h")},
                                        {"src/shell/a.cpp", Include("shell/a.h") + Include("shell/b.h")},
                                        {"src/shell/b.h", Include("shell/c.h")},
                                        {"src/core/d.h", ""}};
  EXPECT_EQ(IncludeCircles(line), Findings());
  std::vector<SourceFile> circle = line;
  circle.push_back(last);
  EXPECT_EQ(IncludeCircles(circle).size(), 3U);
  for (const std::string& finding : IncludeCircles(Project())) ADD_FAILURE() << finding;
}

TEST(Structure, QtStaysInTheDesktopLayer) {
  const std::string qt = "#include <QWidget>\n";
  ExpectKept(StrayQt, {{"src/platform/desktop/a.cpp", qt},
                       {"src/platform/desktop/qt/a.h", qt},
                       {"tests/support/desktop_driver.cpp", qt},
                       {"src/platform/desktop/a.h", "Query Q;  // as a QEvent\n"}});
  ExpectBroken(StrayQt, {{"src/platform/desktop/a.h", qt},
                         {"src/platform/desktop/a.h", "class QWidget;\n"},
                         {"src/framework/a.cpp", qt},
                         {"src/framework/a.cpp", "#include <QtCore/qobject.h>\n"},
                         {"src/framework/a.cpp", Include("platform/desktop/qt/mouse.h")},
                         {"tests/unit/a_test.cpp", qt}});
  ExpectTreeKeeps(StrayQt);
}

TEST(Structure, ClocksAndFilesAreThoseOfTheSystemFolder) {
  const std::string clock = "const auto now = time(nullptr);\n";
  ExpectKept(StrayClocksAndFiles, {{"src/platform/system/clock.cpp", clock},
                                   {"tests/unit/clock_test.cpp", clock},
                                   {"src/core/a.cpp", "Runtime(1);  // time(nullptr)\nShow(\"fopen\");\n"}});
  ExpectBroken(StrayClocksAndFiles, {{"src/core/a.cpp", clock},
                                     {"src/core/a.cpp", "std::chrono::system_clock::now();\n"},
                                     {"src/core/a.cpp", "#include <fstream>\n"},
                                     {"src/core/a.cpp", "open(path, O_RDONLY | O_CLOEXEC);\n"},
                                     {"src/platform/desktop/a.cpp", "QDateTime::currentDateTime();\n"}});
  ExpectTreeKeeps(StrayClocksAndFiles);
}

TEST(Structure, FilesAreShort) {
  ExpectKept(OverlongFile,
             {{"src/a.cpp", Lines(kMostFileLines)}, {"tests/data/a.json", Lines(kMostFileLines + 1)}});
  ExpectBroken(OverlongFile, {{"tests/a.h", Lines(kMostFileLines + 1)}});
  ExpectTreeKeeps(OverlongFile);
}

TEST(Structure, FunctionsAreShort) {
  // A table, a class and a template lie around one function whose body has `lines` lines; the last has four.
  const auto made = [](std::size_t lines) {
    return SourceFile{
        "src/a.cpp",
        "namespace a {\nconst int kTable[] = {\n    1'000,\n};\nclass B\n    : public C {\n public:\n"
        "  B()\n      : c(1),\n        d{'{'} {\n" +
            Lines(lines) +
            "  }\n};\n}  // namespace a\ntemplate <class T>\nint F(T) {\n  if (x) {\n    return \"}\"[0];\n  "
            "}\n" +
            Lines(kMostFunctionLines - 5) + "}\n"};
  };
  ExpectKept(OverlongFunctions, {made(kMostFunctionLines - 2)});
  EXPECT_EQ(OverlongFunctions(made(kMostFunctionLines - 1)),
            Findings{"src/a.cpp:90: 81 lines:         d{''} {"});
  ExpectTreeKeeps(OverlongFunctions);
}

TEST(Structure, TextsGiveTheirReasonsThemselves) {
  ExpectKept(OutsideReferences, {{"a.md", "A special part of 1.5 MiB, see part 2.\n"},
                                 {"src/a.h",
                                  "HFONT Make(Font spe"
                                  "c);\n"}});
  ExpectBroken(OutsideReferences, {{"a.md",
                                    "As the Spe"
                                    "c says.\n"},
                                   {"src/a.h",
                                    "int a;  // see the specifi"
                                    "cation\n"},
                                   {"run",
                                    "# Pa"
                                    "rt 12.3\n"}});
  ExpectTreeKeeps(OutsideReferences);
}

}  // namespace
}  // namespace tests
