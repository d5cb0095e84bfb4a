#pragma once

#include "protocol/wire.h"
#include "sound/audio_clock.h"
#include "sound/instrument.h"

#include <QStringList>

#include <utility>
#include <vector>

/// An instrument that keeps what it is given.
struct Recording : kelo::engine::Instrument {
    struct Played {
        kelo::engine::Frame frame;
        kelo::engine::ChannelMessage message;
    };
    std::vector<Played> played;
    int silenced = 0;
    float gain = 0;

    bool play(kelo::engine::Frame frame, kelo::engine::ChannelMessage message) override
    {
        played.push_back({frame, message});
        return true;
    }
    void setGain(float value) override { gain = value; }
    void silence() override { ++silenced; }
};

/// A player that is run by its own deadlines, and what the display is told meanwhile.
template <typename Player> struct Stage {
    kelo::engine::AudioClock clock{0};
    QStringList lines;
    std::vector<double> times; ///< when each line came
    double now = 0;
    QByteArray course; ///< when it was asked to go on, and how far it came
    kelo::engine::Wire wire{[this](std::string_view line) {
        lines << QString::fromUtf8(line.data(), static_cast<qsizetype>(line.size())).trimmed();
        times.push_back(now);
    }};
    Recording sound;
    Player player{wire, sound, clock};

    void runTo(double time)
    {
        int turns = 0;
        for (auto due = player.deadline(); due && *due <= time; due = player.deadline()) {
            if (++turns == 10000)
                qFatal("it comes to no end");
            now = std::max(now, *due) + 1e-4;
            player.advance(now);
            course += QByteArray::number(now, 'f', 3) + '/' + QByteArray::number(lines.size()) + '/'
                + QByteArray::number(int(sound.played.size())) + ' ';
        }
        now = time;
    }
    QStringList take() { return std::exchange(lines, {}); }

    /// Changes with all that was played and told, and when, since the last `take`.
    [[nodiscard]] int sum() const
    {
        QByteArray all = course + lines.join(u' ').toUtf8() + QByteArray::number(sound.silenced);
        for (const auto &[frame, message] : sound.played)
            all += QByteArray::number(frame) + ' ' + char(message.status) + char(message.first)
                + char(message.second);
        return qChecksum(all);
    }
};
