#include "app/MenuCaptions.h"

#include "platform/MenuItem.h"
#include "ui/modMenus.h"

namespace mq {

Text CaptionWithText(TextView caption, TextView text) {
  return modMenus::SetItemProperty(caption, modMenus::kText, text);
}

Text CaptionWithImage(TextView caption, TextView imageToken) {
  return modMenus::SetItemProperty(caption, modMenus::kImage, imageToken);
}

Text SidebarCaption() {
  modMenus::SidebarOptions sidebar;
  sidebar.text = u"Marquill";
  sidebar.faceName = u"Tahoma";
  sidebar.fontSize = 14;
  sidebar.bold = true;
  sidebar.textColour = Rgb(255, 255, 255);
  sidebar.backColour = Rgb(24, 64, 128);
  sidebar.gradientColour = Rgb(92, 150, 214);
  sidebar.width = 24;
  sidebar.alignment = 2;  // the name sits at the bottom, as a sidebar's title does
  return modMenus::BuildSidebarCaption(sidebar);
}

}  // namespace mq
