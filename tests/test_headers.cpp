// Carries the precompiled headers of the tests; see CMakeLists.txt.
int main() { return 0; }
