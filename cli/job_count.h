// How many frames are rendered at once, and on how many threads each.
#ifndef VITRELL_CLI_JOB_COUNT_H_
#define VITRELL_CLI_JOB_COUNT_H_

#include <cstdint>
#include <functional>
#include <string>

#include "cli/arguments.h"

namespace vitrell::cli {

// As many as asked for, or one for each of the threads; no more than there are frames, and than
// the memory holds of pictures like the one in the file. At least 1. The process may have no other
// thread.
int CountJobs(const RenderArguments& arguments, const std::string& file, std::int64_t frames);

// The same where the bytes that one job takes can be told otherwise; they are asked for only if it
// matters. 0 frames: nobody knows how many.
int CountJobs(const RenderArguments& arguments, std::int64_t frames,
              const std::function<std::int64_t()>& bytesOfJob);

// The share of one of the jobs, counted from 0, in all threads; at least 1.
int ThreadsOf(int job, int jobs, int threads);

}  // namespace vitrell::cli

#endif  // VITRELL_CLI_JOB_COUNT_H_
