// Caption changes the tray commands make, through the menu mark-up routines.
#pragma once

#include "platform/Text.h"

namespace mq {

Text CaptionWithText(TextView caption, TextView text);
Text CaptionWithImage(TextView caption, TextView imageToken);
// The mark-up of the tray menu's sidebar.
Text SidebarCaption();

}  // namespace mq
