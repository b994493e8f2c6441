// Draws a tmux pane to a PNG without any display, in our own dark theme, for a model or a person to read.
//
// A cell is 10 × 20 pixels around text of 16 pixels, whatever fonts there are: a pane of 120 × 40 makes a
// picture of 1216 × 816. Panes so large that the picture would pass four million pixels get smaller cells,
// down to 4 × 8. Sizes are clamped to 1…1000 columns and 1…500 rows; the text may be anything (see
// PaneCells.h). Characters without a font, and all of them when there is no font at all, are drawn as small
// boxes; box drawing, blocks and Braille need no font.
//
// Thread rule: may be called from any thread; calls wait for each other.
#pragma once

#include <string>

namespace velmora {

struct PaneScreen {
  std::string text;  // output of `tmux capture-pane -e -N -p`
  int columns = 0;
  int rows = 0;
  int cursorColumn = 0;  // from 0; one past the last column is the last one, waiting to wrap
  int cursorRow = 0;
  bool cursorVisible = false;
};

/// PNG bytes of the pane. Throws std::runtime_error.
std::string renderPanePicture(const PaneScreen& screen);

}  // namespace velmora
