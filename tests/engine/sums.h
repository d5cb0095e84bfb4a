#pragma once

#include "music/midi_writer.h"

#include <QByteArray>

/// What is heard of a piece and known of its notes. Its checksum stands in tests for what is too
/// much to write down: it changes with any of it.
inline QByteArray everythingOf(const kelo::engine::Piece &piece)
{
    const auto midi = writeMidiFile(piece);
    QByteArray all(reinterpret_cast<const char *>(midi.data()), qsizetype(midi.size()));
    for (const double bar : piece.bars)
        all += QByteArray::number(bar) + ' ';
    for (const int number : piece.barNumbers)
        all += QByteArray::number(number) + ' ';
    for (const kelo::engine::NoteMark &mark : piece.marks)
        all += QByteArray::number(int(mark.hand) + 10 * mark.finger) + (mark.grace ? "g" : "")
            + (mark.trill ? "t" : "") + (mark.rolled ? "r" : "");
    return all;
}
