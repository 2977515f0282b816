#pragma once
// The instruction alphabet inside the layout step: strings that hold instruction or
// national shift characters are laid out here, everything else by the plain loop of
// layout_codes.
//
// Instructions (with the default characters; setmix changes them, mixval the sizes):
//   [  raise what follows by RAIS heights and make it SIZE times smaller (levels nest)
//   ]  lower it by LOWE heights, SIZE times smaller
//   $  back to the base line, the string's height and the base alphabet
//   {  a command up to the next "}": H f height factor, W f width factor, C n colour
//      (C alone: the string's), F n font type (F alone: the string's), R f raise by f
//      heights, M f move along the base line by f heights, T n tab stop n, S n plot
//      symbol n, N n character code n, D the multiplication sign, I slant on/off,
//      U and O under- and overline on/off; "{{" is a brace.
// A switch character of setmix selects its alphabet until the next switch or RES. A
// national shift character of eushft draws the following letter accented.
//
// A bad command gives its warning (46 unknown, 45 no number, 43 bad value, 44 bad tab)
// and is skipped; a command without its "}" gives 46 and is drawn as it stands.

#include "text/decode.h"
#include "text/layout.h"

namespace zorvel {

struct GlobalBlock;
struct MixState;
struct TextState;

// Settings of zorini: instruction alphabet off, "[", "]", "$", "{" (unless a national
// shift holds one of them), no switches, no tabs, no background, the default margin.
// Keeps the national shifts of eushft, which may be set before zorini, and the fonts
// loaded by commands.
void mix_defaults(MixState& m);

// True when `codes` hold a character that the instruction alphabet or a national shift
// acts on in the present state: the check that plain strings pay, one table look-up per
// code, and nothing at all while neither is on.
bool has_instructions(const TextState& t, const CodeString& codes);

// Lays out `codes` into `out` as layout_codes does (the working state already reset for
// the string), with the instructions applied; sets out.length, out.end, out.missing
// and the box extents.
void layout_instructions(GlobalBlock& g, const CodeString& codes, TextLayout& out);

}  // namespace zorvel
