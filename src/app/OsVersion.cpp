#include "app/OsVersion.h"

namespace mq {

Text OsVersionText(const OsVersion& os) {
  Text name;
  if (os.platform == 0) {
    name = u"Win32s";
  } else if (os.platform == 1) {
    name = os.minor == 0 ? u"Windows 95" : os.minor == 90 ? u"Windows ME" : u"Windows 98";
  } else {
    name = u"Windows NT";
    if (os.major == 5 && os.minor == 0) name = u"Windows 2000";
    if (os.major == 5 && os.minor == 1) name = u"Windows XP";
  }
  return name + u" " + ToDecimal(os.major) + u"." + ToDecimal(os.minor) + u" Build " +
         ToDecimal(os.build) + u" (" + os.servicePack + u")";
}

bool IsXpClass(const OsVersion& os) {
  return os.platform == 2 && (os.major > 5 || (os.major == 5 && os.minor >= 1));
}

int IconBaseFor(const OsVersion& os) { return IsXpClass(os) ? 0 : 2; }

}  // namespace mq
