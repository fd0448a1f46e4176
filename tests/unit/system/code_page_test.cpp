#include "platform/system/code_page.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using platform::CodePageFromUtf8;
using platform::InCodePage;
using platform::Utf8FromCodePage;

TEST(CodePageTest, EveryByteComesBack) {
  std::string all;
  for (int byte = 0; byte < 256; ++byte) all += static_cast<char>(byte);
  const std::string text = Utf8FromCodePage(all);
  std::string back;
  ASSERT_TRUE(CodePageFromUtf8(text, back));
  EXPECT_EQ(back, all);
  EXPECT_EQ(text.substr(0, 128), all.substr(0, 128));
}

TEST(CodePageTest, KnowsItsOwnCharacters) {
  EXPECT_EQ(
      Utf8FromCodePage("\x80\x82\x83\x84\x85\x86\x87\x88\x89\x8A\x8B\x8C\x8E\x91\x92\x93\x94\x95\x96\x97"
                       "\x98\x99\x9A\x9B\x9C\x9E\x9F\xA0\xE9\xFF"),
      "€‚ƒ„…†‡ˆ‰Š‹ŒŽ‘’“”•–—˜™š›œžŸ\xC2\xA0éÿ");
  EXPECT_EQ(Utf8FromCodePage("\x81\x8D\x8F\x90\x9D"), "\xC2\x81\xC2\x8D\xC2\x8F\xC2\x90\xC2\x9D");
  for (const unsigned known : {0x41, 0x20AC, 0x81, 0xFF}) EXPECT_TRUE(InCodePage(known)) << known;
  // The byte of the first is the euro's.
  for (const unsigned unknown : {0x80, 0x100, 0x10FFFF}) EXPECT_FALSE(InCodePage(unknown)) << unknown;
}

TEST(CodePageTest, RefusesTheWholeTextForOneStranger) {
  const std::string_view bad[] = {
      "a\xC4\x80",          // not in the code page
      "a\xF0\x9F\x98\x80",  // nor is this, of four bytes
      "a\xE9",              // cut off
      "a\xE2\x82",          // cut off later
      "a\xC3z",             // no second byte
      "a\x80",              // no first byte
      "a\xC1\xA1",
      "a\xE0\x83\xA9",  // longer than need be
      "a\xED\xA0\x80",  // half a pair
      "a\xFF",
  };
  for (const std::string_view text : bad) {
    std::string bytes = "before";
    EXPECT_FALSE(CodePageFromUtf8(text, bytes)) << text;
    EXPECT_EQ(bytes, "");
  }
  std::string bytes = "before";
  EXPECT_TRUE(CodePageFromUtf8("", bytes));
  EXPECT_EQ(bytes, "");
}

}  // namespace
