#pragma once

#include "listen/jobs.h"

namespace kelo::engine {

// The parts of the one table of requests, a file an idea.

[[nodiscard]] std::span<const Job> songsJobs();
[[nodiscard]] std::span<const Job> playingJobs();
[[nodiscard]] std::span<const Job> scoreJobs();

[[nodiscard]] std::span<const Job> lessonsJobs();
[[nodiscard]] std::span<const Job> talkJobs();
[[nodiscard]] std::span<const Job> practiceJobs();
[[nodiscard]] std::span<const Job> exercisesJobs();
[[nodiscard]] std::span<const Job> trainingJobs();

[[nodiscard]] std::span<const Job> makingJobs();
[[nodiscard]] std::span<const Job> studioJobs();

[[nodiscard]] std::span<const Job> voiceJobs();
[[nodiscard]] std::span<const Job> pianoJobs();
[[nodiscard]] std::span<const Job> loudnessJobs();
[[nodiscard]] std::span<const Job> displayJobs();
[[nodiscard]] std::span<const Job> beyondJobs();

} // namespace kelo::engine
