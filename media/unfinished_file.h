// The one file that a signal handler must remove before it ends the process.
#ifndef VITRELL_MEDIA_UNFINISHED_FILE_H_
#define VITRELL_MEDIA_UNFINISHED_FILE_H_

#include <string>

namespace vitrell::media {

// The file that RemoveUnfinishedFile removes from now on; empty for none. Longer names than the
// system allows are not watched.
void SetUnfinishedFile(const std::string& file);

// May be called by a signal handler.
void RemoveUnfinishedFile();

}  // namespace vitrell::media

#endif  // VITRELL_MEDIA_UNFINISHED_FILE_H_
