// Keeps the picture libraries from printing to standard error.
#ifndef VITRELL_MEDIA_QUIET_LIBRARIES_H_
#define VITRELL_MEDIA_QUIET_LIBRARIES_H_

namespace vitrell::media {

// They print what they also return as an error, in words that name neither file nor remedy. While
// an object lives, standard error leads nowhere. Objects must not overlap.
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
