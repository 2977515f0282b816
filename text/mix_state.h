#pragma once
// Settings of the instruction alphabet: control characters inside strings that raise,
// lower and switch alphabets, and the {...} commands.

namespace zorvel {

struct MixState {
  bool on = false;  // mixalf / mixmod
};

}  // namespace zorvel
