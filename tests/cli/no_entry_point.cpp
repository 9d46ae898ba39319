// A module that can be loaded but is not an effect.
extern "C" __attribute__((visibility("default"))) int VitrellTestNothing() { return 0; }
