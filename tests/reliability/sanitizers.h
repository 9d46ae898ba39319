// Which sanitizer this program is built with.
#ifndef VITRELL_RELIABILITY_SANITIZERS_H_
#define VITRELL_RELIABILITY_SANITIZERS_H_

namespace vitrell::reliability {

#if !defined(__has_feature)
#define VITRELL_HAS_FEATURE(feature) 0
#else
#define VITRELL_HAS_FEATURE(feature) __has_feature(feature)
#endif

#if defined(__SANITIZE_ADDRESS__) || VITRELL_HAS_FEATURE(address_sanitizer)
inline constexpr bool kAddressSanitizer = true;
#else
inline constexpr bool kAddressSanitizer = false;
#endif

#if defined(__SANITIZE_THREAD__) || VITRELL_HAS_FEATURE(thread_sanitizer)
inline constexpr bool kThreadSanitizer = true;
#else
inline constexpr bool kThreadSanitizer = false;
#endif

inline constexpr bool kSanitized = kAddressSanitizer || kThreadSanitizer;

#undef VITRELL_HAS_FEATURE

}  // namespace vitrell::reliability

#endif  // VITRELL_RELIABILITY_SANITIZERS_H_
