// Four chords at 120 beats a minute: drums, bass, strings, a plucked figure that wanders from side to side with its
// echoes, and bells. Instruments are tuned and mixed for the ten bands; what a figure here is good for was read from
// their levels.
#include "defaults/song.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <random>

namespace defaults {
namespace {

constexpr double kBeat = 0.5; // seconds
constexpr int kBeats = 8;
constexpr double kTurn = 2 * std::numbers::pi;

// Of a note that lies `semitones` above the A of 55 Hz.
double hertz(int semitones) {
    return 55 * std::exp2(semitones / 12.0);
}

struct Chord {
    int bass;                 // semitones above 55 Hz, as are the others
    std::array<int, 4> notes; // from low to high
};

// A minor, F, C, G; two beats each.
constexpr std::array<Chord, 4> kChords = {
    {{0, {24, 27, 31, 36}}, {-4, {24, 27, 32, 36}}, {3, {22, 27, 31, 34}}, {-2, {22, 26, 29, 34}}}};

const Chord& chordAt(int beat) {
    return kChords[static_cast<std::size_t>(beat / 2) % kChords.size()];
}

double decay(double t, double halfLife) {
    return std::exp2(-t / halfLife);
}

// Rises within `attack` seconds and falls within as many before `length`, so that nothing clicks.
double swell(double t, double length, double attack) {
    return std::min({1.0, t / attack, (length - t) / attack});
}

// White noise through a resonator: a hiss around a pitch.
class Hiss {
public:
    // `width` in hertz, as `centre` is.
    Hiss(double centre, double width, unsigned seed)
        : random_(seed), radius_(std::exp(-std::numbers::pi * width / kSamplesPerSecond)),
          turn_(2 * radius_ * std::cos(kTurn * centre / kSamplesPerSecond)), gain_(1 - radius_) {}

    double next() {
        const double noise = static_cast<double>(random_()) / static_cast<double>(std::mt19937::max()) * 2 - 1;
        const double y = gain_ * (noise - olderNoise_) + turn_ * last_ - radius_ * radius_ * older_;
        olderNoise_ = lastNoise_;
        lastNoise_ = noise;
        older_ = last_;
        last_ = y;
        return y;
    }

private:
    std::mt19937 random_;
    double radius_, turn_, gain_;
    double last_ = 0, older_ = 0, lastNoise_ = 0, olderNoise_ = 0;
};

// A drum whose pitch falls to the lowest band.
void addKick(Loop& loop, double start, double level) {
    loop.add(start, 0.45, 0, [=](double t) {
        const double cycles = 34 * t + 90 * 0.03 * (1 - std::exp(-t / 0.03));
        return level * swell(t, 0.45, 0.004) * decay(t, 0.11) * std::sin(kTurn * cycles);
    });
}

void addHiss(Loop& loop, double start, double pan, double level, double halfLife, Hiss hiss) {
    const double seconds = 8 * halfLife;
    loop.add(start, seconds, pan,
             [=](double t) mutable { return level * swell(t, seconds, 0.001) * decay(t, halfLife) * hiss.next(); });
}

void addDrums(Loop& loop) {
    for (int beat = 0; beat < kBeats; ++beat) {
        const double start = beat * kBeat;
        const unsigned seed = static_cast<unsigned>(beat);
        if (beat % 4 != 3)
            addKick(loop, start, beat % 2 == 0 ? 1.0 : 0.55);
        if (beat % 2 == 1) {
            addHiss(loop, start, 0.15, 1.5, 0.05, Hiss(1900, 900, seed + 100));
            loop.add(start, 0.2, 0.1,
                     [](double t) { return 0.35 * swell(t, 0.2, 0.002) * decay(t, 0.04) * std::sin(kTurn * 196 * t); });
        }
        for (int quarter = 0; quarter < 4; ++quarter) { // hats, the one off the beat open
            const double pan = quarter % 2 == 0 ? -0.3 : 0.4;
            const double level = quarter == 2 ? 1.3 : quarter == 0 ? 0.7 : 0.4;
            const double length = quarter == 2 ? 0.07 : 0.02;
            const unsigned hat = 4 * seed + static_cast<unsigned>(quarter);
            addHiss(loop, start + quarter * kBeat / 4, pan, level, length, Hiss(8000, 1600, hat + 200));
            addHiss(loop, start + quarter * kBeat / 4, -pan, 1.3 * level, length, Hiss(16000, 1600, hat + 300));
        }
    }
}

void addBass(Loop& loop) {
    constexpr std::array<int, 4> kOctaves = {0, 12, 0, 12};
    for (int eighth = 0; eighth < 2 * kBeats; ++eighth) {
        const double pitch = hertz(chordAt(eighth / 2).bass + kOctaves[static_cast<std::size_t>(eighth % 4)]);
        loop.add(eighth * kBeat / 2, 0.26, -0.1, [=](double t) {
            double wave = 0;
            for (int partial = 1; partial <= 5; ++partial)
                wave += std::sin(kTurn * pitch * partial * t) / (partial * partial);
            return 0.5 * swell(t, 0.26, 0.008) * decay(t, 0.2) * wave;
        });
    }
}

// Two strings a note, a little out of tune with each other, one on each side.
void addStrings(Loop& loop) {
    const double length = 2 * kBeat + 0.1;
    for (int beat = 0; beat < kBeats; beat += 2)
        for (const int note : chordAt(beat).notes)
            for (const double side : {-1.0, 1.0}) {
                const double pitch = hertz(note) * (1 + side * 0.002);
                loop.add(beat * kBeat, length, side * 0.8, [=](double t) {
                    const double bow = 1 + 0.35 * std::sin(kTurn * 2 * t + side);
                    return 0.07 * swell(t, length, 0.1) * bow *
                           (std::sin(kTurn * pitch * t) + 0.4 * std::sin(kTurn * 2 * pitch * t));
                });
            }
}

void addFigure(Loop& loop) {
    constexpr std::array<int, 8> kSteps = {0, 2, 3, 1, 2, 3, 0, 3};
    Loop figure(kBeats * kBeat);
    for (int sixteenth = 0; sixteenth < 4 * kBeats; ++sixteenth) {
        const std::size_t step = kSteps[static_cast<std::size_t>(sixteenth % 8)];
        const double pitch = hertz(chordAt(sixteenth / 4).notes[step] + 12 * (1 + sixteenth / 4 % 2));
        const double accent = sixteenth % 3 == 0 ? 0.36 : 0.22;
        figure.add(sixteenth * kBeat / 4, 0.4, std::sin(kTurn * sixteenth / 16), [=](double t) {
            const double shimmer = 1.6 * decay(t, 0.04) * std::sin(kTurn * 2 * pitch * t);
            return accent * swell(t, 0.4, 0.003) * decay(t, 0.07) * std::sin(kTurn * pitch * t + shimmer);
        });
    }
    figure.addEchoes(0.75 * kBeat, 0.4, 5);
    loop.add(figure);
}

void addBells(Loop& loop) {
    struct Bell {
        double beat;
        int note; // semitones above 55 Hz
        double pan;
    };
    // B and C of the fifth octave above the middle one, which the band of 4 kHz hears, and their likes below.
    constexpr std::array<Bell, 8> kBells = {{{0.5, 75, -0.7},
                                             {1.5, 63, 0.7},
                                             {2.25, 75, 0.3},
                                             {3.5, 60, -0.4},
                                             {4.5, 75, 0.8},
                                             {5.25, 63, -0.8},
                                             {6.5, 74, -0.2},
                                             {7.25, 62, 0.5}}};
    for (const Bell& bell : kBells)
        loop.add(bell.beat * kBeat, 1.2, bell.pan, [pitch = hertz(bell.note)](double t) {
            return 0.42 * swell(t, 1.2, 0.002) * decay(t, 0.13) * std::sin(kTurn * pitch * t);
        });
}

} // namespace

Loop song() {
    Loop loop(kBeats * kBeat);
    addDrums(loop);
    addBass(loop);
    addStrings(loop);
    addFigure(loop);
    addBells(loop);
    return loop;
}

} // namespace defaults
