#pragma once
// Where a button's picture and label stand; every painter but the delegating one keeps a copy.

namespace lumenor {

/// Margins in pixels between the button's rectangle and its picture and label, and the label's look.
struct ButtonLayout {
  float fontSize = 0.0F;      ///< of the label; SelectableButtonPainter also makes its box this wide and high
  unsigned char textFlag = 0; ///< not zero: the label is centred; zero: it starts at the leading edge
  int textStyle = 0;          ///< kept with the record; no painter reads it
  int imageLeft = 0;
  int imageRight = 0;
  int imageTop = 0;
  int imageBottom = 0;
  int textLeft = 0;
  int textRight = 0;
  int textTop = 0;
  int textBottom = 0;
};

} // namespace lumenor
