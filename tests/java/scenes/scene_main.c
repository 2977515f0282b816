/* The C side of a scene: the scene's calls, included as they are. The same text is the
 * body of the Java side (Scene.java.in), so both programs make the same calls, and their
 * output and files must be byte for byte the same.
 *
 * A scene (<name>.inc beside this file) is a list of statements valid in C and in Java
 * alike (with `import static zorvel.Zorvel.*`): calls with string and number literals,
 * int and double variables, C-style arrays with initialisers (`double x[] = {1.0, 2.5};`
 * is valid in both), one-element arrays for output values (`int n[] = {0};`), for loops,
 * and printf with %d and %s. A scene that says "float variant" in a comment is also run
 * from Java with float for double and float literals (1.5f for 1.5), which must give the
 * same output: the float[] overloads against C's doubles. */
#include <stdio.h>

#include "zorvel.h"

int main(void) {
#include SCENE
  return 0;
}
