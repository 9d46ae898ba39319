// A module that loads but is no effect.
extern "C" __attribute__((visibility("default"))) int VitrellTestNothing() { return 0; }
