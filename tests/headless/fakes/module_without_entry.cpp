// A loadable module that is not an effect.
extern "C" __attribute__((visibility("default"))) int SomethingElse() { return 1; }
