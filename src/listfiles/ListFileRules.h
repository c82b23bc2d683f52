// The rules around the clip list window's file dialogs: their texts, where they open, the
// extension a saved name gets, which file a typed name loads, and where the load-mode popup
// goes.
#pragma once

#include <optional>

#include "platform/FileSystem.h"
#include "platform/ListFilePorts.h"
#include "platform/Text.h"

namespace mq::ListFileRules {

inline constexpr TextView kSaveTitle = u"Save Marquill File";
inline constexpr TextView kLoadTitle = u"Load Marquill File";
inline constexpr TextView kSaveFilter =
    u"Marquill List (*.MQL)|*.MQL|Marquill Protected List (*.MQP)|*.MQP|All Files (*.*)|*.*";
inline constexpr TextView kLoadFilter =
    u"Marquill List (*.MQL)|*.MQL|Marquill Protected List (*.MQP)|*.MQP|"
    u"All Marquill Files (*.MQL; *.MQP)|*.MQL;*.MQP|All Files (*.*)|*.*";
inline constexpr int kProtectedFilter = 2;

struct InitialLocation {
  Text folder;
  Text fileName;
};
// From the last file: its folder and name when it still exists, else the program's folder
// and no name.
InitialLocation InitialLocationFor(FileSystem& files, TextView lastFile, TextView programFolder);

// A name whose last three characters are "MQL" or "MQP" in any case keeps them; any other
// gets ".mqp" with the protected filter and ".mql" with every other.
Text WithListExtension(TextView path, int filterIndex);
bool IsProtectedName(TextView path);

// The path itself when it exists, else path + ".mqp", else path + ".mql"; nothing when none
// of them exists.
std::optional<Text> FindLoadPath(FileSystem& files, TextView path);

// The popup's top-left corner: at the Load button's bottom-left, moved back inside the screen
// when it would pass an edge.
struct Point {
  int x = 0, y = 0;
  bool operator==(const Point&) const = default;
};
Point PlacePopup(const ScreenRect& loadButton, int width, int height, const ScreenRect& screen);

}  // namespace mq::ListFileRules
