// Under AddressSanitizer: fontconfig keeps what it allocates while it parses its own
// configuration files until the process ends, without a pointer LeakSanitizer can follow.
// That is fontconfig's memory, not the library's; the leak checker leaves it out so that
// it still reports every leak of ours.

#if defined(__SANITIZE_ADDRESS__)
#define ZORVEL_ADDRESS_SANITIZER 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define ZORVEL_ADDRESS_SANITIZER 1
#endif
#endif

#ifdef ZORVEL_ADDRESS_SANITIZER
extern "C" __attribute__((visibility("default"))) const char* __lsan_default_suppressions() {
  return "leak:libfontconfig.so\n";
}
#endif
