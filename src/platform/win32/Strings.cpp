#include "platform/win32/Strings.h"
