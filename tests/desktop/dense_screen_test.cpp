// Pictures on a screen of twice the usual density.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

#include "desktop/recording_window.h"
#include "platform/desktop/bitmap.h"
#include "platform/desktop/device_context.h"
#include "support/bmp_bytes.h"
#include "support/desktop_driver.h"
#include "support/source_folder.h"
#include "support/temporary_folder.h"

namespace tests {
namespace {

// Before the application is made, which reads it.
[[maybe_unused]] const bool dense = setenv("QT_SCALE_FACTOR", "2", 1) == 0;

class DenseScreen : public testing::Test {
 protected:
  // A picture of one black pixel, with these bytes for its double.
  std::unique_ptr<Bitmap> LoadBeside(const std::string& doubled) const {
    folder.Write("name@2x.bmp", doubled);
    return Bitmap::LoadFile(folder.Write("name.bmp", OnePixel(0, 0, 0)));
  }
  DesktopDriver driver;
  TemporaryFolder folder;
};

TEST_F(DenseScreen, ASkinsPictureIsReplacedByItsDoubleIfThatIsOne) {
  const std::string doubled = MakeBmp({2, 2, 24, 40}, '\x40');
  const auto used = LoadBeside(doubled);
  ASSERT_NE(used, nullptr);
  EXPECT_EQ(used->PixelAt(0, 0), RGB(64, 64, 64));
  EXPECT_EQ(used->Width(), 1);
  EXPECT_EQ(used->Height(), 1);
  for (const std::string& wrong : {MakeBmp({2, 1, 24, 40}, '\x40'), MakeBmp({4, 4, 24, 40}, '\x40'),
                                   doubled.substr(0, 40), std::string()}) {
    const auto plain = LoadBeside(wrong);
    ASSERT_NE(plain, nullptr);
    EXPECT_EQ(plain->PixelAt(0, 0), RGB(0, 0, 0));
    EXPECT_EQ(plain->Width(), 1);
  }
  // The double alone is nobody's picture.
  folder.Write("alone@2x.bmp", doubled);
  EXPECT_EQ(Bitmap::LoadFile(folder.Join("alone.bmp")), nullptr);
}

TEST_F(DenseScreen, APenOfNoWidthDrawsOnePixelOfTheScreen) {
  RecordingWindow window;
  window.rect = {0, 0, 20, 20};
  window.paintHook = [](HDC hdc, const PAINTSTRUCT&) {
    hdc->FillRect({0, 0, 20, 20}, RGB(255, 255, 255));
    for (const int width : {1, 0}) {
      hdc->SetPenColor(0, width);
      hdc->DrawLine(width * 4, 0, width * 4, 10);
      hdc->DrawLine(10, width * 4, 20, width * 4);
    }
  };
  ASSERT_TRUE(window.CreateTop());
  std::string column;
  std::string row;
  for (int at = 0; at < 12; ++at) {
    row += driver.PixelAt(window.Handle(), {at, 12}) == 0 ? '#' : '.';
    column += driver.PixelAt(window.Handle(), {30, at}) == 0 ? '#' : '.';
  }
  EXPECT_EQ(row, "#.......##..");
  EXPECT_EQ(column, "#.......##..");
}

TEST_F(DenseScreen, EveryPictureOfOurSkinsHasItsDouble) {
  int pictures = 0;
  const std::filesystem::path styles = tests::SourceFolder() + "/src/resources/styles";
  for (const auto& entry : std::filesystem::recursive_directory_iterator(styles)) {
    const std::string name = entry.path().stem();
    if (entry.path().extension() != ".bmp" || name.ends_with("@2x")) continue;
    ++pictures;
    const std::string doubled = entry.path().parent_path() / (name + "@2x.bmp");
    const auto one = Bitmap::LoadFile(entry.path());
    const auto two = Bitmap::LoadFile(doubled);
    ASSERT_TRUE(one != nullptr && two != nullptr) << entry.path();
    EXPECT_EQ(two->Width(), 2 * one->Width()) << doubled;
    EXPECT_EQ(two->Height(), 2 * one->Height()) << doubled;
  }
  EXPECT_EQ(pictures, 3 * 14);
}

}  // namespace
}  // namespace tests
