// Keeps the picture libraries from printing to standard error.
#ifndef VITRELL_MEDIA_QUIET_LIBRARIES_H_
#define VITRELL_MEDIA_QUIET_LIBRARIES_H_

namespace vitrell::media {

// They also print the errors that they return, without naming the file or a remedy. While an object
// of this class exists, standard error is discarded. Objects must not overlap.
class QuietLibraries {
 public:
  QuietLibraries();
  ~QuietLibraries();
  QuietLibraries(const QuietLibraries&) = delete;
  QuietLibraries& operator=(const QuietLibraries&) = delete;

 private:
  int standardError_ = -1;
};

// How many threads the picture library may use.
void SetLibraryThreads(int threads);

}  // namespace vitrell::media

#endif  // VITRELL_MEDIA_QUIET_LIBRARIES_H_
