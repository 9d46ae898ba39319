// A locale in which numbers have a decimal comma.
#ifndef VITRELL_TESTS_MEDIA_COMMA_LOCALE_H_
#define VITRELL_TESTS_MEDIA_COMMA_LOCALE_H_

#include <string>

namespace vitrell {

// Makes the German locale, and has this process use it while the object lives. No other thread may
// be running.
class CommaLocale {
 public:
  CommaLocale();
  ~CommaLocale();
  CommaLocale(const CommaLocale&) = delete;
  CommaLocale& operator=(const CommaLocale&) = delete;

  // Whether a number of the C library has a comma now.
  bool Holds() const;

 private:
  std::string folder_;
  std::string before_;
};

}  // namespace vitrell

#endif  // VITRELL_TESTS_MEDIA_COMMA_LOCALE_H_
