#include "listfiles/win32/ListFileShell.h"

namespace mq::win32 {

namespace {
std::function<HWND()> WindowOf(ListFileHost& host) {
  return [&host] { return reinterpret_cast<HWND>(host.NativeWindow()); };
}
}  // namespace

ListFileShell::ListFileShell(ListContext context, Settings& settings, ListFileHost& host,
                             Text programFolder)
    : list(context),
      listMessages(WindowOf(host)),
      passMessages([this] { return passWindow.hwnd(); }),
      dialogs(WindowOf(host)),
      passWindow(pass, WindowOf(host)),
      openContext(WindowOf(host), [this](int index) { commands.cmdOpen_Click(index); }),
      commands({list, settings, listMessages, dialogs, host, openContext, pass,
                std::move(programFolder)}) {
  pass.SetView(&passWindow);
}

}  // namespace mq::win32
