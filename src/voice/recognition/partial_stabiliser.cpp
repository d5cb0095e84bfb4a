#include "voice/recognition/partial_stabiliser.h"

#include <algorithm>

namespace kelo {

namespace {

// Seconds.
constexpr double wordStands = 0.1;
constexpr double nameStands = 0.3;
constexpr double takenBackAfter = 0.3;

bool stands(double since, double now, double required)
{
    return now - since >= required - 1e-6;
}

} // namespace

PartialStabiliser::PartialStabiliser(QString name)
    : name_(std::move(name))
{
}

const QStringList &PartialStabiliser::update(const QStringList &words, double now)
{
    const auto count = static_cast<std::size_t>(words.size());
    if (count != places_.size())
        lengthSince_ = now;
    std::size_t same = 0;
    while (same < std::min(count, places_.size())
        && words[static_cast<qsizetype>(same)] == places_[same].word)
        ++same;
    places_.resize(same);
    for (std::size_t i = same; i < count; ++i)
        places_.push_back({words[static_cast<qsizetype>(i)], now});

    QStringList steady;
    bool longSteady = true; // what of it differs from the shown words has stood long enough
    for (const Place &place : places_) {
        if (!stands(place.since, now, place.word == name_ ? nameStands : wordStands))
            break;
        const bool contradicts =
            steady.size() < shown_.size() && shown_[steady.size()] != place.word;
        longSteady = longSteady && (!contradicts || stands(place.since, now, takenBackAfter));
        steady.append(place.word);
    }
    const bool extends =
        steady.size() >= shown_.size() && std::equal(shown_.begin(), shown_.end(), steady.begin());
    const bool shortened = steady.size() == words.size() && steady.size() < shown_.size();
    if (extends || (longSteady && steady.size() >= shown_.size())
        || (longSteady && shortened && stands(lengthSince_, now, takenBackAfter)))
        shown_ = steady;
    return shown_;
}

} // namespace kelo
