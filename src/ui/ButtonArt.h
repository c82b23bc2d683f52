// The clip list window's image buttons, drawn by code in the paperclip style at any pixel
// size: the three toggles in both their states, Save and Load.
#pragma once

#include "ui/Raster.h"

namespace mq::art {

enum class ButtonArt {
  ViewExpanded,    // chkMenu(0) up: the wide window with its button column
  ViewCondensed,   // chkMenu(0) down: the narrow window
  PasteMoveToEnd,  // chkMenu(1) up: the pasted entry goes to the queue's end
  PasteDelete,     // chkMenu(1) down: the pasted entry is deleted
  PinLoose,        // chkMenu(2) up: a pin lying aside
  PinIn,           // chkMenu(2) down: the pin pushed in
  Save,            // cmdFile(0)
  Load,            // cmdFile(1)
};

// A square image of `size` pixels with a transparent background.
Image RenderButton(ButtonArt art, int size);

}  // namespace mq::art
