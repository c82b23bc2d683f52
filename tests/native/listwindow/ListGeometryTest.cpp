// The clip list window's layouts in twips, the view switch, the resize handling, the saved
// geometry, moving and resizing by the grab bands, and the viewer's placement.
#include "ListHarness.h"

namespace mq::test {
namespace {

TEST(ListGeometry, ViewSwitchArithmetic) {
  ListLayout layout;
  layout.Condense();
  // Only the list and the five toggles stay; their places are the layout's table.
  for (int i = 0; i < kControlCount; ++i) {
    const Ctl c = static_cast<Ctl>(i);
    const bool kept = c == Ctl::lstClip || (c >= Ctl::chkMenu0 && c <= Ctl::chkMenu4);
    EXPECT_EQ(layout[c].visible, kept) << "control " << i;
  }
  EXPECT_EQ(layout.MinimumSize(), (Size{1950, 1845}));
  EXPECT_EQ(layout.window, (Rect{0, 0, 1950, 1845}));

  layout.Expand();
  const ListLayout design;
  for (int i = 0; i < kControlCount; ++i) {
    const Ctl c = static_cast<Ctl>(i);
    EXPECT_EQ(layout[c].visible, design[c].visible) << "control " << i;
    if (!design[c].visible) continue;  // hidden ones keep where they were
    EXPECT_EQ(layout[c].rect, design[c].rect) << "control " << i;
  }
  EXPECT_EQ(layout.window, design.window);
}

TEST(ListGeometry, ResizeKeepsTheMinimumAndTheRightSideDistance) {
  ListLayout layout;
  layout.window.width += 600;
  layout.window.height += 300;
  layout.Resized(false);
  EXPECT_EQ(layout[Ctl::lstClip].rect, (Rect{120, 120, 3015, 3315}));
  EXPECT_EQ(layout.window.width - layout[Ctl::cmdNoSel].rect.Right(), 120);
  EXPECT_EQ(layout[chkMenu(2)].rect.left, 3960);

  layout.window.width = 100;  // below the minimum: raised back
  layout.window.height = 3000;
  layout.Resized(false);
  EXPECT_EQ(layout.window, (Rect{0, 0, 3735, 3255}));
  EXPECT_EQ(layout[Ctl::lstClip].rect, (Rect{120, 120, 2415, 3015}));

  layout.window.width = 9000;  // minimized: nothing happens
  layout.Resized(true);
  EXPECT_EQ(layout[Ctl::lstClip].rect.width, 2415);

  // The condensed view has its own minimum and margin.
  ListLayout small;
  small.Condense();
  small.window.width = 1000;
  small.window.height = 2845;
  small.Resized(false);
  EXPECT_EQ(small.window.width, 1950);
  EXPECT_EQ(small[Ctl::lstClip].rect, (Rect{45, 45, 1500, 2755}));
}

TEST(ListGeometry, ViewSwitchSavesAndRestoresEachViewsGeometry) {
  ListHarness h;
  h.list.EnsureLoaded();
  h.list.WindowResized({2000, 1000, 4000, 3500}, false);
  h.list.chkMenu_Click(0);
  EXPECT_EQ(h.port.Get(u"Cur_Lt_Lg"), "2000");
  EXPECT_EQ(h.port.Get(u"Cur_Wd_Lg"), "4000");
  EXPECT_EQ(h.port.Get(u"Cur_Hi_Lg"), "3500");
  // Nothing saved for the condensed view yet: it stays where the window was.
  EXPECT_EQ(h.list.layout.window, (Rect{2000, 1000, 1950, 1845}));
  h.list.WindowMoved(100, 200);
  h.list.chkMenu_Click(0);
  EXPECT_EQ(h.port.Get(u"Cur_Lt_Sm"), "100");
  EXPECT_EQ(h.list.layout.window, (Rect{2000, 1000, 4000, 3500}));
  EXPECT_EQ(h.list.layout[Ctl::lstClip].rect, (Rect{120, 120, 2680, 3260}));
  h.list.chkMenu_Click(0);
  EXPECT_EQ(h.list.layout.window, (Rect{100, 200, 1950, 1845}));

  // "Set_Sz" other than "1": the window keeps its place across a switch.
  ListHarness keep;
  keep.port.Set(u"Set_Sz", u"0");
  keep.port.Set(u"Cur_Lt_Lg", u"5000");
  keep.list.EnsureLoaded();
  EXPECT_EQ(keep.list.layout.window, (Rect{0, 0, 3735, 3255})) << "the design position";
  keep.list.WindowMoved(700, 800);
  keep.list.chkMenu_Click(0);
  keep.list.chkMenu_Click(0);
  EXPECT_EQ(keep.list.layout.window, (Rect{700, 800, 3735, 3255}));
}

TEST(ListGeometry, RestoredValuesThatAreNotNumericCountAsZero) {
  ListHarness h;
  h.port.Set(u"Cur_Lt_Lg", u" 1500 ");
  h.port.Set(u"Cur_Tp_Lg", u"-300");
  h.port.Set(u"Cur_Wd_Lg", u"abc");
  h.port.Set(u"Cur_Hi_Lg", u"4000.4");
  h.list.EnsureLoaded();
  EXPECT_EQ(h.list.layout.window, (Rect{1500, -300, 3735, 4000}))
      << "width 0 is raised to the minimum";
  EXPECT_EQ(h.list.layout[Ctl::lstClip].rect.height, 3760);
}

TEST(ListGeometry, GrabBandsCursorAndDrag) {
  const Size window{200, 150};
  struct {
    int x, y, band;
    Grab grab;
  } hits[] = {{0, 0, 5, Grab::TopLeft},       {199, 2, 5, Grab::TopRight},
              {3, 146, 5, Grab::BottomLeft},  {195, 145, 5, Grab::BottomRight},
              {4, 70, 5, Grab::Left},         {5, 70, 5, Grab::None},
              {195, 70, 5, Grab::Right},      {100, 4, 5, Grab::Top},
              {100, 147, 3, Grab::Bottom},    {100, 146, 3, Grab::None},
              {200, 70, 5, Grab::None}};
  for (const auto& h : hits)
    EXPECT_EQ(HitTest(h.x, h.y, window, h.band, h.band), h.grab) << h.x << "," << h.y;

  const Rect start{100, 100, 200, 150};
  int x = 0, y = 0;
  GrabPoint(Grab::BottomRight, start, x, y);
  EXPECT_EQ(std::pair(x, y), std::pair(300, 250));
  GrabPoint(Grab::Left, start, x, y);
  EXPECT_EQ(x, 100);
  // The edge that is not dragged stays; the window never gets below its minimum.
  const Size minimum{120, 100};
  EXPECT_EQ(DragRect(Grab::Right, start, 400, 0, minimum), (Rect{100, 100, 300, 150}));
  EXPECT_EQ(DragRect(Grab::Right, start, -500, 0, minimum), (Rect{100, 100, 120, 150}));
  EXPECT_EQ(DragRect(Grab::Left, start, 50, 0, minimum), (Rect{50, 100, 250, 150}));
  EXPECT_EQ(DragRect(Grab::Left, start, 290, 0, minimum), (Rect{180, 100, 120, 150}));
  EXPECT_EQ(DragRect(Grab::TopLeft, start, 90, 80, minimum), (Rect{90, 80, 210, 170}));
  EXPECT_EQ(DragRect(Grab::Bottom, start, 999, 120, minimum), (Rect{100, 100, 200, 100}));
}

TEST(ListGeometry, ViewerOpensBesideTheListInsideTheWorkArea) {
  const Rect work{0, 0, 1920, 1040};
  const Size viewer{305, 313};
  // A list at the left of the screen: the viewer to its right, at the list's top.
  EXPECT_EQ(PlaceViewer({10, 100, 249, 217}, 1920, viewer, work), (Rect{259, 100, 305, 313}));
  // At the right: to its left.
  EXPECT_EQ(PlaceViewer({1600, 100, 249, 217}, 1920, viewer, work), (Rect{1295, 100, 305, 313}));
  // Near the bottom and beyond the left edge: clamped into the work area.
  EXPECT_EQ(PlaceViewer({1700, 900, 249, 217}, 1920, viewer, work), (Rect{1395, 727, 305, 313}));
  EXPECT_EQ(PlaceViewer({-200, 10, 150, 217}, 1920, viewer, work), (Rect{0, 10, 305, 313}));
  // A second monitor's work area right of the first.
  EXPECT_EQ(PlaceViewer({3700, 0, 249, 217}, 1920, viewer, {1920, 0, 1920, 1080}),
            (Rect{3395, 0, 305, 313}));
}

}  // namespace
}  // namespace mq::test
