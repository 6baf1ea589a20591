// LeakSanitizer suppressions of the renderer tests, built into the binary so that they apply
// however it is started. fontconfig keeps its configuration and the patterns pango caches in
// its per-thread font map until the process ends; the amount stays the same whether one page
// or a hundred are rendered, so it is a cache and not a leak of ours. Nothing else is hidden.
// Exported: the sanitizer runtime looks the hook up dynamically.
extern "C" __attribute__((visibility("default"))) const char* __lsan_default_suppressions() {
  return "leak:libfontconfig.so\n";
}
