#pragma once
// Settings of the instruction alphabet: control characters inside strings that raise,
// lower and switch alphabets, and the {...} commands; the national shift characters of
// eushft; the text box (background and margin).

#include <array>
#include <cstdint>
#include <vector>

namespace zorvel {

struct FontRecord;

// What a character of a string does when the instruction alphabet is on (the national
// shifts work whether it is on or not). Indices into MixState::chars.
enum MixRole : int {
  kMixNone = 0,
  kMixRaise = 1,      // EXP: raise the following characters
  kMixLower = 2,      // IND: lower them
  kMixReset = 3,      // RES: back to the base line, height and base alphabet
  kMixCommand = 4,    // INST: a command {...}
  kMixAlphabet = 5,   // STAN .. RUSS: kMixAlphabet + alphabet
  kMixNational = 11,  // GERM .. SLAS of eushft: kMixNational + kind
  kMixRoles = 19,
};

// Tab stops of settab.
inline constexpr int kMaxTabs = 10;

struct MixState {
  bool on = false;  // mixalf / mixmod
  // The library's own labels: instructions on whatever `on` says, and the control codes
  // 1, 2 and 3 stand for EXP, RES and INST where those have no character.
  bool label = false;
  bool national = false;  // some national shift character is set
  // Character of every role (0: none) and the role of every ASCII character.
  std::array<char, kMixRoles> chars{};
  std::array<std::uint8_t, 128> role{};
  double raise = 0.6;                // mixval RAIS: raise of an exponent, in heights of the piece
  double lower = 0.35;               // mixval LOWE: drop of an index
  double size = 0.7;                 // mixval SIZE: size factor per level
  std::array<int, kMaxTabs> tabs{};  // settab, plot units from the start of the string
  int tab_count = 0;
  int background = -1;  // txtbgd: colour that fills the text box first, -1 none
  int margin = -1;      // txtmar: box margin in plot units, -1 a quarter of the height

  // Fonts of {Fn} commands, loaded on first use and kept (the layout points into them);
  // reserved for every font type at the first, so they never move.
  std::vector<FontRecord> fonts;
};

}  // namespace zorvel
