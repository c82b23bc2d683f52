// Resource numbers shared by the resource script and the program.
#pragma once
#define IDI_TRAY_ENABLED 101
#define IDI_TRAY_DISABLED 102
#define IDI_TRAY_ENABLED_CLASSIC 103
#define IDI_TRAY_DISABLED_CLASSIC 104
#define IDI_LIST_WINDOW 105
// Menu images I1..I7.
#define IDI_MENU_IMAGE_BASE 201
