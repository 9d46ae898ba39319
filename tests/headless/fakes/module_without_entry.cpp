// A loadable module that is no effect.
extern "C" __attribute__((visibility("default"))) int SomethingElse() { return 1; }
