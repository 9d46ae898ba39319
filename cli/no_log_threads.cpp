// Keeps a library that nobody uses from starting threads.
//
// The picture library loads OpenVDB, for volumes, which loads log4cplus, whose constructor starts
// four threads before main. Where the system gives fewer, that ends the process. The constructor
// calls this function by its name, which the program exports, so that it is found here first; the
// library then starts its threads when something is logged, which nothing here does.
namespace log4cplus {

// NOLINTNEXTLINE(readability-identifier-naming): the library's name.
void initializeLog4cplus();
// NOLINTNEXTLINE(misc-use-internal-linkage,readability-identifier-naming): likewise, and exported.
__attribute__((visibility("default"))) void initializeLog4cplus() {}

}  // namespace log4cplus
