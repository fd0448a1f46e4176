// The title page of the program: a pane with a strip that carries the program's name, the name in large
// letters and a picture, parts of which may change every few seconds until the page has told its story once.
#pragma once

#include <string>
#include <vector>

#include "framework/pane.h"
#include "platform/desktop/bitmap.h"

// The picture, at its own size, on a window of its own.
class IntroPicture : public OwnerDrawn {
 public:
  // The picture with this number that has further frames, the numbers that follow it.
  static constexpr int kAnimatedPicture = 4000;
  static constexpr int kLastFrame = 3;

  // `newPictureId` names the picture; `newBackground` kNoColour leaves the ground to the window class. It is
  // called by the name of the program.
  IntroPicture(const char* newProgram, int newPictureId, COLORREF newBackground);

  // 0 to kLastFrame; from 1 on a frame of an animated picture lies over its lower part.
  int Frame() const { return frame; }
  void SetFrame(int newFrame) { frame = newFrame; }
  // Marks the part that frames change to be painted.
  void InvalidateFrame();

  void Paint(HDC hdc, const RECT& client) const override;
  void Describe(int item, AccessiblePart* part) override;

 private:
  const std::string program;
  const COLORREF background;
  int frame = 0;
  LazyBitmap picture;
  std::vector<LazyBitmap> frames;  // kLastFrame, or none
};

class ZarfIntroPane : public ZarfPane {
 public:
  // Where the picture and the large name are: a tall picture at the left, or a wide one with the name below.
  enum class Layout { kTallPicture = 1, kWidePicture = 2 };
  struct Look {
    Layout layout;
    bool animated;
    int pictureId;
    COLORREF pictureBackground;
    COLORREF largeText;
  };

  // `newName` is the pane's, `newProgram` that of the program whose title page it is.
  ZarfIntroPane(const char* newName, const char* newProgram, const PaneColours& newColours,
                const Look& newLook);

  const IntroPicture& Picture() const { return picture; }
  bool TimerRuns() const { return timerRuns; }
  // The page without the picture.
  void Paint(HDC hdc, const RECT& client) const override;

  LRESULT OnCreate(const MessageRecord& record) override;
  LRESULT OnSize(const MessageRecord& record) override;
  LRESULT OnTimer(const MessageRecord& record) override;
  LRESULT OnClose(const MessageRecord& record) override;
  // The large name is its item.
  void Describe(int item, AccessiblePart* part) override;
  int ItemAt(POINT point) override;
  // Ends the changing of the picture for good.
  bool CanLeave() override;
  // Begins it, the first time.
  bool OnEnter() override;

 private:
  void StopTimer();

  const std::string program;
  const Look look;
  IntroPicture picture;
  RECT largeTextRect;
  bool timerRuns = false;
  LazyBitmap strip{"tbar2"};
  LazyBitmap stripCorner{"tbar2_corner"};
};
