#include "listfiles/ListFileRules.h"

#include "listfiles/FileOperations.h"

namespace mq::ListFileRules {

namespace {
Text LastThreeUpper(TextView path) {
  return ToUpperAscii(path.size() <= 3 ? path : path.substr(path.size() - 3));
}
}  // namespace

InitialLocation InitialLocationFor(FileSystem& files, TextView lastFile, TextView programFolder) {
  const Text name = FileOperations::FileNameOnly(lastFile);
  // A name without a folder cannot place the dialog: the program's folder it is.
  if (!name.empty() && FileOperations::FileExists(files, lastFile)) {
    // The folder is what precedes the name's first occurrence, less the backslash.
    const size_t at = lastFile.find(name);
    if (at != TextView::npos && at > 0) return {Text(lastFile.substr(0, at - 1)), name};
  }
  return {Text(programFolder), Text()};
}

Text WithListExtension(TextView path, int filterIndex) {
  const Text ending = LastThreeUpper(path);
  if (ending == u"MQL" || ending == u"MQP") return Text(path);
  return Text(path) + (filterIndex == kProtectedFilter ? u".mqp" : u".mql");
}

bool IsProtectedName(TextView path) { return LastThreeUpper(path) == u"MQP"; }

std::optional<Text> FindLoadPath(FileSystem& files, TextView path) {
  for (TextView suffix : {TextView(), TextView(u".mqp"), TextView(u".mql")}) {
    Text candidate = Text(path) + Text(suffix);
    if (FileOperations::FileExists(files, candidate)) return candidate;
  }
  return std::nullopt;
}

Point PlacePopup(const ScreenRect& loadButton, int width, int height, const ScreenRect& screen) {
  Point at{loadButton.left, loadButton.bottom};
  if (at.x + width > screen.right) at.x = screen.right - width;
  if (at.y + height > screen.bottom) at.y = screen.bottom - height;
  // A button partly off the left or top edge must not take the popup with it.
  if (at.x < screen.left) at.x = screen.left;
  if (at.y < screen.top) at.y = screen.top;
  return at;
}

}  // namespace mq::ListFileRules
