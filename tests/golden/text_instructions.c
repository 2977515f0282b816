/* Golden scene of the instruction alphabet: the gallery example text_instructions, which
 * uses every command, the alphabet switches, national letters, a text box and XEXP axis
 * labels. Catches any change in how instructions place, size and colour the text. */
#include "../../examples/text_instructions.c"
