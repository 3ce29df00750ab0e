// The texts of the verb help; nothing else.
#include "commands/arguments.h"

namespace stage {
namespace {

constexpr const char* kOverview = R"(stage renders the animated instruments of the plugin veldran1_x64.dll beside it.

  stage [FILE]          opens the window, with that animation
  stage list            shows the effects and their settings: key, kind, default, what is allowed
  stage render --effect NAME|ROW [options]
                        renders one animation into one or more files
  stage batch FILE      carries out many renders from a text file
  stage inspect FILE    shows what a GIF, PNG, APNG or MNG file holds, frame by frame
  stage help [VERB]     shows this text, or that of one verb with its options

A person's own saved settings are neither used nor changed.
Exit codes: 0 done, 1 the plugin failed, 2 wrong usage, 3 trouble with a file, 4 a batch in which renders failed.
)";

constexpr const char* kList = R"(stage list

Shows the effects by row and name, each with its settings: key, kind, default, what is allowed, label.
)";

constexpr const char* kRender = R"(stage render --effect NAME|ROW [options]
stage render --like FILE [options]

What is rendered:
  --effect NAME|ROW  the effect's name, the beginning of it, or its row number
  --like FILE        the effect, the settings and the markers that made that GIF, PNG, APNG or MNG file
  --set KEY=VALUE    a setting; may be given many times, the last one of a key counts
  --ini FILE         begin with the settings of that configuration file, not with the defaults
  --markers FILE     the radar's markers: a text file of lines "name,bearing,distance"
  --test             press the plugin's Test button, not Build

What is written; --as and --out may be given several times, the first --as belongs to the first --out and so on:
  --as gif|apng|mng|png  png: one numbered file for each frame; when left out, told by the file's name, else gif
  --out FILE         the file to write; when left out, named after the effect
  --frames DIR       also write each frame as DIR/frame-0000.png, frame-0001.png and so on
  --loop N           how many times the animation is shown, 0: forever (the default)
  --matte #RRGGBB    in a GIF, the colour under what is half transparent; white
  --threshold N      in a GIF, pixels of a lower opacity (1 to 255) become transparent; 128
  --json             report as one line of JSON

The first format, or the file of --like, decides whether the plugin finds an editor of GIF or one of PNG and MNG files:
its delays count hundredths of a second in the former, milliseconds in the latter. Files remember how they were made.
)";

constexpr const char* kBatch = R"(stage batch FILE [--json]

Each line of the text file (UTF-8) holds the options of one render, as on a command line: words with blanks stand in
double quotes, in which \" is a quote. Empty lines and lines that begin with # are left out. What fails is reported,
and the next line is carried out. --json reports one line of JSON for each render and one at the end.
)";

constexpr const char* kInspect = R"(stage inspect FILE [--json]

Shows format, size, playing time as the file holds it and as browsers show it, how the file was made if it remembers,
and every frame: delay, place, colours, bytes, what becomes of it before the next one.
)";

} // namespace

std::string usageText(std::optional<Verb> verb) {
    if (verb == Verb::List)
        return kList;
    if (verb == Verb::Render)
        return kRender;
    if (verb == Verb::Batch)
        return kBatch;
    if (verb == Verb::Inspect)
        return kInspect;
    return kOverview;
}

} // namespace stage
