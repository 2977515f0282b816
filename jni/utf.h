#pragma once
// Conversions between Java's UTF-16 strings and the UTF-8 bytes that the library takes
// and gives. Java hands native code "modified UTF-8" (U+0000 as two bytes, characters
// beyond U+FFFF as two three-byte surrogates); the library writes its strings into file
// names and files, where only real UTF-8 is right, so the binding converts from UTF-16
// itself. No JNI types here, so the conversions can be tested without a virtual machine.
//
// Raw bytes: the library's 8-bit character sets (chacod "STAN", "ISO1", ...) take one
// byte per character, and not every byte sequence is UTF-8. The low surrogates U+DC80 to
// U+DCFF, which never stand alone in well-formed text, carry the bytes 0x80 to 0xFF in
// both directions (the "surrogate escape" of other language runtimes): "\udce9" reaches
// the library as the single byte 0xE9, and a byte that is not part of valid UTF-8 comes
// back to Java as U+DC00 + byte, so that such text survives the round trip unchanged.

#include <cstddef>
#include <cstdint>

namespace zorvel::jni {

// Largest number of UTF-8 bytes that `units` UTF-16 units can need (a unit takes at most
// three bytes; a surrogate pair of two units takes four).
constexpr std::size_t utf8_capacity(std::size_t units) { return 3 * units; }

// Encodes n UTF-16 units as UTF-8 into `out`, which holds utf8_capacity(n) bytes, and
// returns the number of bytes written (no terminator). An unpaired low surrogate from
// U+DC80 to U+DCFF is the raw byte 0x80 to 0xFF; any other unpaired surrogate becomes
// U+FFFD; U+0000 ends the text, as a C string cannot hold it.
std::size_t utf16_to_utf8(const std::uint16_t* s, std::size_t n, char* out);

// Decodes n bytes of UTF-8 into `out`, which holds n units, and returns the number of
// units written. Decoding stops at a zero byte. Every byte that does not belong to a
// well-formed sequence (overlong forms, surrogates, values beyond U+10FFFF, cut
// sequences, 8-bit text) becomes the escape U+DC00 + byte.
std::size_t utf8_to_utf16(const char* s, std::size_t n, std::uint16_t* out);

}  // namespace zorvel::jni
