// Settings under which every instrument is quickly built: the smallest sizes, few frames, files where it needs some.
#pragma once

#include "built_frames.h"
#include "sound_bytes.h"

namespace recording {

// The files live as long as the object.
class SmallInstruments {
public:
    std::string settings() const {
        std::string settings = "MainDelay = 7\nMainRadarIncrement = 33\nMainLissajousIncrement = 33\n"
                               "MainSonicGlow = 5\nMainVoiceGlow = 5\nMainVoiceStepSize = 64\n"
                               "MainCountdownSeconds = 0\nMainCountdownSize = 10\nMainBubbleWide = 40\n"
                               "MainBubbleDeep = 40\nMainBarGraphWidth = 40\nMainBarGraphType = 2\n"
                               "MainBarGraphImageFile = a picture\nMainDatapadTextFile = " +
                               text_.path() + "\n";
        for (const char* key : {"Plasma", "Altimeter", "VUAnalogSquare", "VUAnalogRound", "Lissajous", "MagicEye",
                                "Arclight", "Radar", "Tach", "Sonic", "Voice", "Datapad"})
            settings += line("Main" + std::string(key) + "Size", 48);
        for (const char* key :
             {"VUAnalogSquare", "VUAnalogRound", "VUDigHorz", "VUDigVert", "Spectrum", "MagicEye", "Sonic", "Voice"}) {
            settings += "Main" + std::string(key) + "Sound = " + sound_.path() + "\n";
            settings += line("Main" + std::string(key) + "Frames", 2);
        }
        for (const char* key : {"Plasma", "Altimeter", "BarGraph", "Bubble", "Arclight", "Tach", "Stopwatch"})
            settings += line("Main" + std::string(key) + "Frames", 2);
        for (const char* key : {"VUDigHorz", "VUDigVert", "Spectrum"})
            settings += line("Main" + std::string(key) + "LEDs", 8);
        return settings + line("MainLadderFrames", 9);
    }

private:
    static constexpr int kLevels[] = {0, 254};
    TemporaryFile sound_{"veldran-small-test.wav", levelSound(kLevels)};
    TemporaryFile text_{"veldran-small-test.txt", "a\nb\n"};
};

} // namespace recording
