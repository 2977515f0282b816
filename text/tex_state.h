#pragma once
// Settings of the formula mode: $...$ and $$...$$ laid out as formulas.

namespace zorvel {

struct TexState {
  bool on = false;  // texmod
};

}  // namespace zorvel
