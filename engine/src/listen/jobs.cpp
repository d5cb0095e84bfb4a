#include "listen/job_tables.h"

namespace kelo::engine {

std::span<const JobGroup> jobGroups()
{
    static const JobGroup groups[] = {
        {"Songs", songsJobs()},
        {"While something plays", playingJobs()},
        {"Scores", scoreJobs()},
        {"Lessons", lessonsJobs()},
        {"How much is said in lessons", talkJobs()},
        {"Practice", practiceJobs()},
        {"Exercises for the fingers", exercisesJobs()},
        {"Training and the band", trainingJobs()},
        {"Music of its own", makingJobs()},
        {"Other programs", studioJobs()},
        {"Talking with me", voiceJobs()},
        {"Your piano", pianoJobs()},
        {"How loud, and whose sound", loudnessJobs()},
        {"The display", displayJobs()},
        {"", beyondJobs()},
    };
    return groups;
}

std::string sayable(std::string_view example)
{
    std::string text;
    for (const char c : example) {
        if (c == '#')
            text += "three";
        else if (c == '@')
            text += "minuet in g";
        else if (c == '~')
            text += "sad";
        else
            text += c;
    }
    return text;
}

} // namespace kelo::engine
