// Skins: what is read from their files, whatever these hold, and how one is chosen.
#include "shell/skins.h"

#include <sys/stat.h>

#include "desktop/shell_fixture.h"
#include "shell/commands.h"
#include "shell/skin_colour.h"
#include "shell/skins_dialog.h"
#include "shell/skins_menu.h"
#include "support/bmp_bytes.h"
#include "support/windows.h"

namespace tests {
namespace {

TEST(SkinColour, TakesWhatItCanFromTheLeft) {
  constexpr std::pair<const char*, COLORREF> kCases[] = {
      {"1,2,3", RGB(1, 2, 3)},
      {" 255, +128,\t7 and more", RGB(255, 128, 7)},
      {"0,0,5", RGB(0, 0, 5)},
      {"300,-1,256", RGB(44, 255, 0)},
      {"9,8", RGB(9, 8, 0)},
      {"9,,7", RGB(9, 0, 0)},
      {"red", 0},
      {"4294967297,99999999999999999999999999999999,1", RGB(1, 255, 1)},
      {"", 0},
      {"-", 0},
  };
  for (const auto& [text, colour] : kCases) EXPECT_EQ(ParseSkinColour(text), colour) << text;
}

TEST(SkinBitmap, EveryDepthAndHeaderIsRead) {
  const DesktopDriver driver;
  for (const unsigned header : {12U, 40U, 52U, 56U, 108U, 124U}) {
    for (const unsigned depth : {1U, 4U, 8U, 24U, 32U}) {
      SCOPED_TRACE(testing::Message() << header << " " << depth);
      const auto bitmap = Bitmap::FromBmp(MakeBmp({5, 3, depth, header}));
      ASSERT_NE(bitmap, nullptr);
      EXPECT_EQ(bitmap->Width(), 5);
      EXPECT_EQ(bitmap->Height(), 3);
      EXPECT_EQ(bitmap->PixelAt(4, 2), depth <= 8 ? RGB(3, 2, 1) : RGB(0, 0, 0));
    }
  }
  // The first row of the file is the lowest, but for a negative height.
  std::string bytes = MakeBmp({1, 2, 24, 40});
  Put(bytes, bytes.size() - 8, 0x030201, 3);
  const auto bottomUp = Bitmap::FromBmp(bytes);
  Put(bytes, 22, static_cast<std::uint32_t>(-2), 4);
  const auto topDown = Bitmap::FromBmp(bytes);
  ASSERT_TRUE(bottomUp != nullptr && topDown != nullptr);
  EXPECT_EQ(bottomUp->PixelAt(0, 1), RGB(3, 2, 1));
  EXPECT_EQ(topDown->PixelAt(0, 0), RGB(3, 2, 1));
  // 5, 6 and 5 bits, told by masks behind the header.
  std::string fields = MakeBmp({1, 1, 16, 40});
  Put(fields, 30, 3, 4);
  Put(fields, 10, 66, 4);
  std::string masks;
  for (const std::uint32_t mask : {0xF800U, 0x07E0U, 0x001FU}) Append(masks, mask, 4);
  fields.insert(54, masks);
  Put(fields, 66, 0x07E0, 2);
  for (const unsigned header : {40U, 52U}) {
    Put(fields, 14, header, 4);
    const auto green = Bitmap::FromBmp(fields);
    ASSERT_NE(green, nullptr) << header;
    EXPECT_EQ(green->PixelAt(0, 0) & 0xFFF0FFU, RGB(0, 0xF0, 0)) << header;
  }
  Put(fields, 14, 40, 4);
  Put(fields, 58, 0xF000, 4);  // green over red
  EXPECT_EQ(Bitmap::FromBmp(fields), nullptr);
}

TEST(SkinBitmap, OnlyFilesOfSomeSizeAreRead) {
  const DesktopDriver driver;
  EXPECT_NE(Bitmap::FromBmp(MakeBmp({2048, 2048, 1, 40})), nullptr);
  EXPECT_EQ(Bitmap::FromBmp(MakeBmp({2049, 1, 1, 40})), nullptr);
  const TemporaryFolder folder;
  EXPECT_NE(Bitmap::LoadFile(folder.Write("good.bmp", OnePixel(1, 2, 3))), nullptr);
  EXPECT_EQ(Bitmap::LoadFile(folder.Join("missing.bmp")), nullptr);
  EXPECT_EQ(Bitmap::LoadFile(folder.Path()), nullptr);
  mkfifo(folder.Join("pipe.bmp").c_str(), 0600);
  EXPECT_EQ(Bitmap::LoadFile(folder.Join("pipe.bmp")), nullptr);
  const std::string large = folder.Write("large.bmp", OnePixel(1, 2, 3));
  std::filesystem::resize_file(large, (std::size_t{16} << 20) + 1);
  EXPECT_EQ(Bitmap::LoadFile(large), nullptr);
  std::filesystem::resize_file(large, std::size_t{16} << 20);
  EXPECT_NE(Bitmap::LoadFile(large), nullptr);
}

class Skins : public ShellTest {
 protected:
  Skins() {
    UnloadSkin();
    std::filesystem::create_directories(Folder().Join("Styles/pictures"));
  }
  // Writes a skin file, without its section line.
  static void Write(const std::string& fileName, const std::string& keys) {
    Folder().Write("Styles/" + fileName, "[Preference]\r\n" + keys);
  }
  // A skin for each name: a.ini is "Skin a".
  static void WriteSkins(const std::string& names) {
    for (const char name : names) Write(std::string(1, name) + ".ini", std::string("name=Skin ") + name);
  }
  static std::vector<std::string> Listed() {
    std::vector<std::string> names;
    for (const SkinListEntry& skin : BuildSkinList()) names.push_back(skin.name);
    return names;
  }
  static COLORREF FirstPixel(const std::unique_ptr<Bitmap>& image) {
    return image != nullptr ? image->PixelAt(0, 0) : kNoColour;
  }
};

TEST_F(Skins, ASkinIsReadWholeWhenItIsFirstNeeded) {
  SkinRecord* const skin = GetSkin();
  UnloadSkin();
  const std::pair<const char*, const std::unique_ptr<Bitmap>*> images[] = {
      {"bmpTitle", &skin->title},
      {"bmpTitle_left", &skin->titleLeft},
      {"bmpTitle_right", &skin->titleRight},
      {"bmpSubTitle", &skin->subTitle},
      {"bmpButtonClose_1", &skin->close[0]},
      {"bmpButtonClose_2", &skin->close[1]},
      {"bmpButtonClose_3", &skin->close[2]},
      {"bmpButtonRestore_1", &skin->maximize[0]},
      {"bmpButtonRestore_2", &skin->maximize[1]},
      {"bmpButtonRestore_3", &skin->maximize[2]},
      {"bmpButtonMinimize_1", &skin->minimize[0]},
      {"bmpButtonMinimize_2", &skin->minimize[1]},
      {"bmpButtonMinimize_3", &skin->minimize[2]},
      {"bmpResize", &skin->resize}};
  const std::pair<const char*, const COLORREF*> colours[] = {{"colorBack", &skin->colorBack},
                                                             {"colorBackUp", &skin->colorBackUp},
                                                             {"colorBackDown", &skin->colorBackDown},
                                                             {"colorTitle", &skin->colorTitle},
                                                             {"colorTitleUp", &skin->colorTitleUp},
                                                             {"colorTitleDown", &skin->colorTitleDown},
                                                             {"colorFrame", &skin->colorFrame},
                                                             {"colorFrameUp", &skin->colorFrameUp},
                                                             {"colorFrameDown", &skin->colorFrameDown},
                                                             {"colorTextTitle", &skin->colorTextTitle},
                                                             {"colorPanelFrame", &skin->colorPanelFrame}};
  std::string keys = "name=Whole\r\nfolder=pictures\r\n";
  unsigned char number = 0;
  for (const auto& [key, image] : images) {
    keys += std::string(key) + "=" + key + ".bmp\r\n";
    Folder().Write("Styles/pictures/" + std::string(key) + ".bmp", OnePixel(++number, 0, 0));
  }
  int blue = 0;
  for (const auto& [key, colour] : colours)
    keys += std::string(key) + "=0,0," + std::to_string(++blue) + "\r\n";
  Write("1_Metallic.ini", keys);
  EXPECT_EQ(GetSkin(), skin);
  int red = 0;
  for (const auto& [key, image] : images) EXPECT_EQ(FirstPixel(*image), RGB(++red, 0, 0)) << key;
  blue = 0;
  for (const auto& [key, colour] : colours) EXPECT_EQ(*colour, RGB(0, 0, ++blue)) << key;

  // Another skin counts once the old one is unloaded. It lacks everything; the text colour stays.
  Write("other.ini", "name=Other");
  Set("CurrSkin", "other.ini");
  EXPECT_NE(GetSkin()->title, nullptr);
  UnloadSkin();
  EXPECT_FALSE(skin->loaded);
  EXPECT_EQ(skin->title, nullptr);
  EXPECT_EQ(GetSkin(), skin);
  EXPECT_EQ(skin->title, nullptr);
  EXPECT_EQ(skin->colorBack, kUnsetColour);
  EXPECT_EQ(skin->colorTextTitle, RGB(0, 0, 10));
  Set("CurrSkin", "gone.ini");
  ReloadSkin();
  EXPECT_EQ(skin->colorFrame, RGB(5, 0, 0));
  EXPECT_EQ(skin->colorTextTitle, RGB(0, 0, 10));
}

TEST_F(Skins, BadPicturesAreLeftOutOneByOne) {
  Folder().Write("Styles/pictures/good.bmp", OnePixel(9, 0, 0));
  Folder().Write("Styles/pictures/cut.bmp", OnePixel(9, 0, 0).substr(0, 50));
  Folder().Write("Styles/beside.bmp", OnePixel(8, 0, 0));
  Folder().Write("outside.bmp", OnePixel(7, 0, 0));
  const auto title = [&](const std::string& folder, const std::string& name) {
    Write("1_Metallic.ini", "folder=" + folder + "\nbmpTitle=" + name + "\nbmpResize=good.bmp\n");
    ReloadSkin();
    return FirstPixel(GetSkin()->title);
  };
  EXPECT_EQ(title("pictures", "good.bmp"), RGB(9, 0, 0));
  EXPECT_EQ(title("", "beside.bmp"), RGB(8, 0, 0));
  EXPECT_EQ(title("", "pictures\\good.bmp"), RGB(9, 0, 0));
  const std::string outside = Folder().Join("outside.bmp");
  for (const std::string& name :
       {std::string("cut.bmp"), std::string("none.bmp"), std::string("../beside.bmp"),
        std::string("..\\beside.bmp"), std::string("sub/../../beside.bmp"), outside, std::string("..")}) {
    EXPECT_EQ(title("pictures", name), kNoColour) << name;
    EXPECT_EQ(FirstPixel(GetSkin()->resize), RGB(9, 0, 0)) << name;
  }
  EXPECT_EQ(title("..", "outside.bmp"), kNoColour);
  EXPECT_EQ(title(Folder().Path(), "outside.bmp"), kNoColour);
  EXPECT_EQ(title(std::string(5000, 'x'), "good.bmp"), kNoColour);
}

TEST_F(Skins, TheListHasWhatIsNamedInOrderUpToItsEnd) {
  WriteSkins("b");
  Write("C.INI", "name=Upper");
  Write("unnamed.ini", "folder=pictures");
  Write("empty.ini", "name=");
  Write("notes.txt", "name=No skin");
  Write("long.ini", "name=" + std::string(400, 'n'));
  std::filesystem::create_directory(Folder().Join("Styles/folder.ini"));
  WriteSkins("a");
  EXPECT_EQ(Listed(), (std::vector<std::string>{"Skin a", "Skin b", "Upper", std::string(254, 'n')}));
  for (int i = 0; i < 510; ++i) Write(std::to_string(i) + ".ini", "name=More");
  EXPECT_EQ(BuildSkinList().size(), 499U);
  std::filesystem::remove_all(Folder().Join("Styles"));
  EXPECT_TRUE(BuildSkinList().empty());
}

TEST_F(Skins, TheDialogOffersTheCurrentSkinAndTakesAnother) {
  WriteSkins("abc");
  const std::vector<SkinListEntry> listed = BuildSkinList();
  Set("CurrSkin", "B.INI");
  std::string chosen;
  const auto selected = [](HWND dialog) {
    return SendDlgItemMessage(dialog, SkinsDialog::kSkinList, LB_GETCURSEL, 0, 0);
  };
  driver.WhenDialogOpens([&](HWND dialog) {
    EXPECT_EQ(SendDlgItemMessage(dialog, SkinsDialog::kSkinList, LB_GETCOUNT, 0, 0), 3);
    EXPECT_EQ(listed[static_cast<std::size_t>(selected(dialog))].fileName, "b.ini");
    EXPECT_FALSE(Enabled(dialog, IDOK));
    driver.Press(dialog, selected(dialog) == 0 ? VK_DOWN : VK_UP);
    EXPECT_TRUE(Enabled(dialog, IDOK));
    chosen = listed[static_cast<std::size_t>(selected(dialog))].fileName;
    driver.ClickControl(dialog, IDOK);
  });
  ShowSkinsDialog(&owner);
  EXPECT_NE(chosen, "b.ini");
  EXPECT_EQ(Setting("CurrSkin"), chosen);
  driver.ProcessEvents();
  EXPECT_EQ(owner.notices, (std::vector<NoticedWindow::Notice>{{kNotifySkin, 0}}));

  Set("CurrSkin", listed[0].fileName);
  // The selected line, pressed again, is a choice as well.
  driver.WhenDialogOpens([&](HWND dialog) {
    driver.Click(GetDlgItem(dialog, SkinsDialog::kSkinList), {30, 6});
    EXPECT_TRUE(Enabled(dialog, IDOK));
    driver.Press(dialog, VK_ESCAPE);
  });
  ShowSkinsDialog(&owner);
  driver.ProcessEvents();
  EXPECT_EQ(owner.notices.size(), 1U);
  Set("CurrSkin", "gone.ini");
  driver.WhenDialogOpens([&](HWND dialog) {
    EXPECT_EQ(SendDlgItemMessage(dialog, SkinsDialog::kSkinList, LB_GETCURSEL, 0, 0), -1);
    driver.DoubleClick(GetDlgItem(dialog, SkinsDialog::kSkinList), {30, 6});
  });
  ShowSkinsDialog(&owner);
  EXPECT_EQ(Setting("CurrSkin"), listed[0].fileName);
}

TEST_F(Skins, TheMenuHasTheCurrentSkinGreyedAndPostsAChoice) {
  std::filesystem::remove_all(Folder().Join("Styles"));
  ShowSkinsMenu(owner);  // opens nothing
  std::filesystem::create_directories(Folder().Join("Styles"));
  WriteSkins("ab");
  Write("c.ini", "name=R&D");
  Write("d.ini", "name=" + std::string(200, 'W'));
  Set("CurrSkin", "A.ini");
  driver.ChooseMenuItem("R&D");
  ShowSkinsMenu(owner);
  std::vector<std::string> offered = driver.LastMenu();
  ASSERT_EQ(offered.size(), 4U);
  EXPECT_LT(offered[3].size(), 60U) << "a menu that covers the screen";
  offered.pop_back();
  EXPECT_EQ(offered, (std::vector<std::string>{"(Skin a)", "Skin b", "R&D"}));
  driver.ProcessEvents();
  ASSERT_EQ(owner.commands.size(), 1U);
  EXPECT_EQ(owner.commands[0].id, ID_FIRST_SKIN + 2);
  for (const int none : {-1, 4, 499, 500}) SelectSkin(nullptr, none);
  EXPECT_EQ(Setting("CurrSkin"), "A.ini");
  SelectSkin(nullptr, 2);
  EXPECT_EQ(Setting("CurrSkin"), "c.ini");
  driver.ProcessEvents();
  EXPECT_EQ(owner.notices, (std::vector<NoticedWindow::Notice>{{kNotifySkin, 0}}));
}

}  // namespace
}  // namespace tests
