// An empty module. The package lies behind its image; the engine finds it by the handle that the loader gives.
extern "C" __attribute__((visibility("default"))) const char quillonCarrier[] = "quillon carrier";
