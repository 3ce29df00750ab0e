// What the host understands of words: the plugin's list of effects, the command line, values of settings, and what it
// says back. Damaged lists and hostile values must be refused, not believed.
#include "base/failure.h"
#include "base/json.h"
#include "commands/arguments.h"
#include "commands/batch.h"
#include "commands/effect_catalog.h"
#include "commands/report.h"
#include "commands/setting_value.h"
#include "commands/settings_text.h"

#include <gtest/gtest.h>

#include <functional>

namespace stage {
namespace {

const std::string kStart = "voltane-effects\t1\nbutton\ttest\t48\neffect\t0\tAnalog Meter (round)\n"
                           "effect\t1\tAnalog Meter (square)\neffect\t7\tCountdown *\n"
                           "effect\t15\tRadar\n";
const std::string kCatalog = kStart + "setting\tMainRadarAngle\tinteger\t90\t0\t360\t15\tAngle\t\n"
                                      "setting\tMainRadarTrace\tcolour\t65280\t\t\t15\tTrace\t\n"
                                      "setting\tMainRadarSize\tchoice\t1\t\t\t15\tSize\tsmall;medium;large\n"
                                      "setting\tMainRadarMarkers\ttext\t\t\t\t15\tMarkers\t\n"
                                      "setting\tMainRadarSound\tfile\t\t\t\t15\tSound\t\n"
                                      "setting\tMainCountTo\tinteger\t9\t\t\t7\t\t\n"
                                      "setting\tMainDelay\tinteger\t10\t\t\t-\t\t\n"
                                      "setting\tMainAlphaTrans\tflag\t0\t\t\t-\tAlpha\t\n"
                                      "setting\tTruecolour\tflag\t0\t\t\t-\tTrue colour\t\n";

// The message of the failure with that exit code; "(none)" when there is no failure, so that no expectation finds it.
std::string failureOf(ExitCode code, const std::function<void()>& action) {
    try {
        action();
    } catch (const Failure& failure) {
        return failure.code() == code ? failure.what() : "(another code) " + std::string(failure.what());
    }
    return "(none)";
}

bool contains(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

using Action = std::function<void()>;

void expectFailure(ExitCode code, const std::string& part, const Action& action) {
    const std::string said = failureOf(code, action);
    EXPECT_TRUE(contains(said, part)) << part << " / " << said;
}

std::optional<std::string> asItIs(std::string_view text) {
    if (text == "\xE2\x98\x83") // stands for a letter that the system's code page lacks
        return std::nullopt;
    return std::string(text);
}

TEST(StageCatalog, EffectsAreFoundByRowNameAndBeginning) {
    const EffectCatalog catalog = EffectCatalog::parse(kCatalog);
    EXPECT_EQ(catalog.testButton(), 48u);
    const EffectCatalog withMarkers = EffectCatalog::parse(kCatalog + "markers\t15\n");
    EXPECT_TRUE(withMarkers.hasMarkers(withMarkers.findEffect("radar")));
    EXPECT_FALSE(withMarkers.hasMarkers(withMarkers.findEffect("7")));
    const std::pair<const char*, std::uint32_t> found[] = {
        {"15", 15}, {"RADAR", 15}, {"rad", 15}, {"countdown", 7}, {"Countdown *", 7}, {"analog meter (r", 0}};
    for (const auto& [wanted, row] : found)
        EXPECT_EQ(catalog.findEffect(wanted).row, row) << wanted;
    const std::pair<Action, const char*> refused[] = {
        {[&] { catalog.findEffect("Rader"); }, "nearest name is \"Radar\""},
        {[&] { catalog.findEffect("14"); }, "no effect \"14\""},
        {[&] { catalog.findEffect(""); }, "no effect \"\""},
        {[&] { catalog.findEffect("analog"); }, "\"Analog Meter (round)\" \"Analog Meter (square)\""},
        {[&] { catalog.findSetting("MainRadarAgnle"); }, "nearest is \"MainRadarAngle\""}};
    for (const auto& [find, said] : refused)
        expectFailure(ExitCode::WrongUsage, said, find);
    EXPECT_EQ(catalog.findSetting("mainradarANGLE").key, "MainRadarAngle");
}

TEST(StageCatalog, DamageIsNamedWithItsLine) {
    const std::pair<std::string, const char*> cases[] = {
        {"", "form that this program does not know"},
        {"voltane-effects\t1", "no test button"},
        {"voltane-effects\t1\nbutton\ttest\t48\n", "no effects"},
        {"voltane-effects\t1\nbutton\ttest\t70000\n", "line 2"},
        {kStart + "button\ttest\t49\n", "line 7: a second test button"},
        {kStart + "effect\t15\tRadar\n", "line 7: a row that stands twice"},
        {kStart + "effect\t99999999999\tX\n", "line 7: no row number"},
        {kStart + "effect\t3\tready\tX\n", "line 7: a wrong number of fields"},
        {kStart + "setting\tA\tinteger\t1\t5\t4\t-\t\t\n", "an empty range"},
        {kStart + "setting\tA\tinteger\tx\t\t\t-\t\t\n", "a default that is not a number"},
        {kStart + "setting\tA B\tinteger\t1\t\t\t-\t\t\n", "a key of a wrong form"},
        {kStart + "setting\tA\tchoice\t1\t\t\t-\t\t\n", "choices that do not fit"},
        {kStart + "setting\tA\tflag\t1\t\t\t3\t\t\n", "an effect that is not listed"},
        {kCatalog + "setting\tMainDelay\tflag\t1\t\t\t-\t\t\n", "a key that stands twice"}};
    for (const auto& c : cases)
        expectFailure(ExitCode::PluginFailed, c.second, [&] { EffectCatalog::parse(c.first); });
    // Every beginning of a good list is either refused or itself a list; none may crash.
    for (std::size_t length = 0; length < kCatalog.size(); ++length)
        failureOf(ExitCode::PluginFailed, [&] { EffectCatalog::parse(kCatalog.substr(0, length)); });
}

TEST(StageValues, KindsAndRanges) {
    const EffectCatalog catalog = EffectCatalog::parse(kCatalog);
    // The key of the markers has 16 letters, so that " = " leaves 258 - 19 = 239 bytes.
    const std::string longest(239, 'm');
    const struct {
        const char* key;
        std::string given;
        const char* stored; // null: refused
    } cases[] = {{"MainAlphaTrans", "Yes", "1"},
                 {"MainAlphaTrans", "2", nullptr},
                 {"MainRadarAngle", "361", nullptr},
                 {"MainRadarAngle", "-1", nullptr},
                 {"MainRadarAngle", "", nullptr},
                 {"MainDelay", "4294967295", "4294967295"},
                 {"MainDelay", "4294967296", nullptr},
                 {"MainRadarTrace", "#102030", "3153936"}, // 0x302010
                 {"MainRadarTrace", "0x302010", "3153936"},
                 {"MainRadarTrace", "16777216", nullptr},
                 {"MainRadarTrace", "#+12345", nullptr},
                 {"MainRadarSize", "2", "2"},
                 {"MainRadarSize", "3", nullptr},
                 {"MainRadarMarkers", "a = b ", "a = b "},
                 {"MainRadarMarkers", " a", nullptr},
                 {"MainRadarMarkers", "=a", nullptr},
                 {"MainRadarMarkers", "a\nMainDelay = 1", nullptr},
                 {"MainRadarMarkers", "\xE2\x98\x83", nullptr},
                 {"MainRadarMarkers", longest, longest.c_str()},
                 {"MainRadarMarkers", longest + 'm', nullptr}};
    for (const auto& c : cases) {
        const Setting& setting = catalog.findSetting(c.key);
        if (c.stored == nullptr) {
            expectFailure(ExitCode::WrongUsage, c.key, [&] { checkedValue(setting, c.given, asItIs); });
            continue;
        }
        const std::string stored = checkedValue(setting, c.given, asItIs);
        EXPECT_EQ(stored, c.stored) << c.key << " " << c.given;
        // As it is shown it is taken again.
        EXPECT_EQ(checkedValue(setting, shownValue(setting, stored), asItIs), stored) << c.key;
    }
}

TEST(StageSettings, PrivateFile) {
    EXPECT_EQ(composeSettings("", {}, 15), "MainEffect = 15\n");
    const KeyValue delay{"MainDelay", "7"};
    EXPECT_EQ(composeSettings("A = 1\r\nB = 2", {&delay, 1}, 3), "A = 1\r\nB = 2\nMainDelay = 7\nMainEffect = 3\n");
    EXPECT_THROW(composeSettings("A = 1\n\x1A", {}, 3), Failure);
}

TEST(StageSettings, FilesRememberWhatIsNeededAndNothingElse) {
    const EffectCatalog catalog = EffectCatalog::parse(kCatalog);
    const std::string left = "; note\r\nMainEffect = 15\r\nMainRadarAngle = 45\r\nMainRadarSize = 1\r\n"
                             "MainRadarSound = C:\\mine\\a b.wav\r\nMainCountTo = 3\r\nMainDelay = 5\r\n"
                             "MainDelay = 5\r\nUnknown = 1\r\n";
    const Effect& radar = catalog.findEffect("radar");
    const auto isMine = [](std::string_view file) { return file.ends_with("a b.wav"); };
    const auto isNone = [](std::string_view) { return false; };
    const std::string text = settingsToRemember(catalog, left, radar, OutputFormat::Gif, isNone);
    EXPECT_EQ(text, "; delays in hundredths of a second\nMainRadarAngle = 45\nMainRadarSound = C:\\mine\\a "
                    "b.wav\nMainDelay = 5\nMainEffect = 15\n");
    EXPECT_FALSE(contains(settingsToRemember(catalog, left, radar, OutputFormat::Mng, isMine), "wav"));
    EXPECT_EQ(effectRowIn(text), 15u);
    EXPECT_EQ(editorIn(text), OutputFormat::Gif);
    EXPECT_EQ(editorIn(settingsToRemember(catalog, left, radar, OutputFormat::Mng, isNone)), OutputFormat::Png);
    EXPECT_EQ(editorIn("MainEffect = 15\n"), std::nullopt);
    EXPECT_EQ(effectRowIn("MainRadarAngle = 4\n"), std::nullopt);

    // What comes back, or what comes from another hand; and how many lines are refused.
    const auto recalled = [&](std::string_view file) {
        const RecalledSettings read = recalledSettings(catalog, file, asItIs);
        std::string all;
        for (const KeyValue& setting : read.settings)
            all += setting.key + "=" + setting.value + ";";
        return all + std::to_string(read.refusals.size());
    };
    EXPECT_EQ(recalled(text), "MainRadarAngle=45;MainRadarSound=C:\\mine\\a b.wav;MainDelay=5;0");
    EXPECT_EQ(recalled("MainRadarAngle = 4000\nMainRadarSound = \\\\far\\a.wav\nEvil = 1\nMainDelay = 6\n"),
              "MainDelay=6;3");
}

TEST(StageArguments, AllOptions) {
    const auto parsed = [](std::string_view line) { return parseArguments(parseBatch(line).at(0).words); };
    const Arguments arguments =
        parsed("render --effect radar --set A=b=c --set D= --ini my.ini --as PNG --test --out \"x y.dat\" --frames f "
               "--out b.MNG --loop 3 --json --out c.apng --matte #102030 --threshold 7 --markers m.txt");
    const RenderOptions& render = arguments.render;
    EXPECT_EQ(std::tie(render.effect, render.iniFile, render.markersFile, render.framesFolder),
              std::tuple("radar", "my.ini", "m.txt", "f"));
    EXPECT_EQ(std::tie(render.button, render.plays, render.opacityThreshold, render.matte, arguments.report),
              std::tuple(BuildButton::Test, 3u, 7, Rgb{0x10, 0x20, 0x30}, ReportStyle::Json));
    // The first --as belongs to the first --out; the others are told by their names.
    std::string all;
    for (const KeyValue& setting : render.settings)
        all += setting.key + "=" + setting.value + ";";
    for (const OutputRequest& output : render.outputs)
        all += *output.file + ":" + std::string(formatName(output.format)) + ";";
    EXPECT_EQ(all, "A=b=c;D=;x y.dat:PNG;b.MNG:MNG;c.apng:APNG;");
    EXPECT_EQ(parsed("inspect --json \"a b\"").file, "a b");
    EXPECT_EQ(parsed("list").verb, Verb::List);
    for (const auto& [line, verb] : {std::pair{"render --loop --help", std::optional(Verb::Render)},
                                     {"help batch", Verb::Batch},
                                     {"help", std::nullopt},
                                     {"--help list", Verb::List}})
        EXPECT_EQ(parsed(line).helpOn, verb) << line;
}

TEST(StageArguments, MistakesAreNamed) {
    const std::pair<std::vector<std::string>, const char*> cases[] = {
        {{}, "stage render"},
        {{"rendr"}, "nearest is render"},
        {{"render"}, "wants --effect"},
        {{"render", "--efect", "radar"}, "nearest is --effect"},
        {{"render", "--effect"}, "wants a value"},
        {{"render", "--effect", "radar", "--effect", "radar"}, "given twice"},
        {{"render", "--effect", "radar", "--as", "bmp"}, "allows gif, apng, mng and png"},
        {{"render", "--effect", "radar", "--set", "=1"}, "KEY=VALUE"},
        {{"render", "--like", "a", "--ini", "b"}, "either"},
        {{"render", "--effect", "radar", "--out", "a.gif", "--out", "a.gif"}, "same file"},
        {{"render", "--effect", "radar", "--loop", "-1"}, "from 0 to 65536"},
        {{"render", "--effect", "radar", "--threshold", "0"}, "from 1 to 255"},
        {{"render", "--effect", "radar", "--matte", "grey"}, "#FFFFFF"},
        {{"inspect"}, "wants a file"},
        {{"batch", "a", "b"}, "takes one file"},
        {{"list", "radar"}, "nothing after it"},
        {{"render", "--effect", ""}, "empty value"},
        {{"render", "--effect", "radar", "--out", ""}, "empty value"},
        {{"help", "me"}, "one verb"}};
    for (const auto& c : cases)
        expectFailure(ExitCode::WrongUsage, c.second, [&] { parseArguments(c.first); });
}

TEST(StageArguments, BatchLines) {
    const std::vector<BatchLine> lines =
        parseBatch("\xEF\xBB\xBF# all\r\n\r\n--effect radar\t--out \"C:\\a b\\c.gif\"\r\n"
                   " --set \"A=say \\\"x\\\"\" \"\"");
    std::string all;
    for (const BatchLine& line : lines)
        all += std::to_string(line.number) + testing::PrintToString(line.words);
    EXPECT_EQ(all, R"(3{ "--effect", "radar", "--out", "C:\\a b\\c.gif" }4{ "--set", "A=say \"x\"", "" })");
    expectFailure(ExitCode::WrongUsage, "Line 2", [] { parseBatch("a\n\"b"); });
}

TEST(StageReport, JsonIsUtf8WhateverANameHolds) {
    EXPECT_EQ(jsonText("\"\\\x1F\xC3\xA4\xF4\x8F\xBF\xBF"), "\"\\\"\\\\\\u001f\xC3\xA4\xF4\x8F\xBF\xBF\"");
    // A letter written longer than it is, a surrogate, beyond the last letter, cut off.
    for (const std::string damaged :
         {"\xE0\x9F\x9F", "\xF0\x8F\xBF\xBF", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xE2\x98", "\xC3"}) {
        std::string replaced;
        for (std::size_t i = 0; i < damaged.size(); ++i)
            replaced += "\xEF\xBF\xBD";
        EXPECT_EQ(jsonText(damaged + "("), "\"" + replaced + "(\""); // what follows is another letter
    }
}

// Of what failed, of batches, and of what browsers make of a file.
TEST(StageReport, FailuresAndWarnings) {
    EXPECT_EQ(failureJson(Failure(ExitCode::FileTrouble, "No \"x\".")),
              "{\"error\":\"No \\\"x\\\".\",\"exit_code\":3}\n");
    const BatchFailure failures[] = {{3, "no such effect"}};
    EXPECT_EQ(batchText(3, failures), "2 of 3 renders done\nline 3: no such effect\n");
    EXPECT_EQ(batchJson(3, failures),
              "{\"renders\":3,\"done\":2,\"failures\":[{\"line\":3,\"error\":\"no such effect\"}]}\n");
    const PlayingTime slowed{20, 200, 2, 10, 2};
    EXPECT_TRUE(contains(browserWarning({OutputFormat::Mng, "r.mng", 1, slowed}).value_or(""), "MNG"));
    EXPECT_EQ(browserWarning({OutputFormat::Png, "r.png", 1, slowed}), std::nullopt);
    EXPECT_EQ(browserWarning({OutputFormat::Gif, "r.gif", 1, {10, 100, 1, 10, 1}}), std::nullopt);
    EXPECT_EQ(browserWarning({OutputFormat::Gif, "r.gif", 1, {40, 40, 0, 50, 2}}), std::nullopt);
}

TEST(StageReport, InspectionTellsEveryFrame) {
    AnimationFile file;
    file.format = OutputFormat::Apng;
    file.animation = {30, 20, {}, 3, {}, "one\n\ntwo\x07", Remembered{"MainEffect = 15\n", "N,1,2\n"}};
    file.stored = {{0, 0, 30, 20, 100, Disposal::Restore, Blend::Replace, 0, 777},
                   {4, 5, 6, 7, 10, Disposal::Keep, Blend::Over, 16, 88}};
    const std::string text = inspectionText(file, "r.png", 1234);
    for (const char* part : {"30x20", "3 times", "one\n", "two\n", "MainEffect = 15\n", "N,1,2\n",
                             "    0       100     true       777  undone   replace  30x20+0+0\n",
                             "    1        10       16        88  stays    over     6x7+4+5\n"})
        EXPECT_TRUE(contains(text, part)) << part << " in " << text;
    const std::string json = inspectionJson(file, "r.png", 1234);
    for (const char* part :
         {"\"plays\":3,", "\"comment\":\"one\\u000a\\u000atwo\\u0007\"", "\"markers\":\"N,1,2\\u000a\"",
          "{\"delay_ms\":10,\"x\":4,\"y\":5,\"width\":6,\"height\":7,\"colours\":16,\"bytes\":88,"
          "\"then\":\"stays\",\"drawn\":\"over\"}"})
        EXPECT_TRUE(contains(json, part)) << part << " in " << json;
}

TEST(StageReport, ListSummaryAndProgress) {
    const std::string list = listText(EffectCatalog::parse(kCatalog));
    for (const char* part : {"15  Radar\n", " 7  Countdown *\n", "Analog Meter (round)\n", "#00FF00", "from 0 to 360",
                             "0 small, 1 medium, 2 large"})
        EXPECT_TRUE(contains(list, part)) << part;
    EXPECT_LT(list.find("MainRadarAngle"), list.find("Options of every effect"));
    EXPECT_GT(list.find("MainDelay"), list.find("Options of every effect"));

    EXPECT_TRUE(contains(listText(EffectCatalog::parse(kStart + "setting\tMainDelay\tinteger\t10\t5\t\t-\t\t\n")),
                         "a whole number from 5\n"));
    const FileReport written{OutputFormat::Gif, "r\"\n.gif", 4321, {900, 9000, 90, 10, 90}};
    RenderReport report{"Radar", 120, 100, 90, {written}, {}, 1.25, {{"Building", 0.5}}, 4096};
    EXPECT_EQ(
        summaryJson(report),
        "{\"effect\":\"Radar\",\"frames\":90,\"width\":120,\"height\":100,\"files\":[{\"file\":\"r\\\"\\u000a.gif\","
        "\"format\":\"gif\",\"bytes\":4321,\"duration_ms\":900,\"browser_duration_ms\":9000,\"slowed_frames\":90,"
        "\"browser_frames_per_second\":10}],\"warnings\":[],\"seconds_taken\":1.25,"
        "\"stages\":[{\"stage\":\"Building\",\"seconds\":0.5}],\"peak_memory_bytes\":4096}\n");
    EXPECT_TRUE(contains(browserWarning(report.files[0]).value_or(""), "in 9.00 s instead of 0.90 s: 90 of 90"));
    report.warnings = {"slow"};
    EXPECT_TRUE(contains(summaryJson(report), "\"warnings\":[\"slow\"]"));
    report.files[0].file = "radar.gif";
    EXPECT_EQ(summaryText(report), "file      radar.gif\nbytes     4321\nframes    90\nsize      120x100\n"
                                   "duration  0.90 s\ntaken     1.25 s\n");

    ProgressText plain(ProgressStyle::PlainLines);
    EXPECT_EQ(plain.showStatus("Building") + plain.showProgress(1, 2) + plain.showStatus("Building") +
                  plain.showStatus("Remapping") + plain.clear(),
              "Building\nRemapping\n");
    // On a terminal the cursor stays in one line, which is empty at the end.
    ProgressText redrawn(ProgressStyle::RedrawnLine);
    std::string all = redrawn.showStatus("Building");
    EXPECT_EQ(redrawn.showProgress(1, 0), ""); // nothing is known of the whole: the status stays
    for (int done = 0; done <= 1000; ++done)
        all += redrawn.showProgress(static_cast<std::uint64_t>(done), 1000);
    EXPECT_TRUE(contains(all, "Building        [##############################] 100 %"));
    EXPECT_LT(all.size(), 140 * 60u); // not redrawn where nothing changed
    all += redrawn.clear();
    EXPECT_EQ(all.find('\n'), std::string::npos);
    EXPECT_TRUE(all.ends_with(" \r"));
}

TEST(StageClock, StagesFollowEachOther) {
    using namespace std::chrono_literals;
    const StageClock::Moment start{};
    StageClock clock;
    clock.begin("Opening", start);
    clock.begin("Building", start + 250ms);
    clock.begin("Building", start + 400ms); // is told twice
    clock.begin("Closing", start + 750ms);
    EXPECT_EQ(clock.finish(start + 1s),
              (std::vector<StageTime>{{"Opening", 0.25}, {"Building", 0.5}, {"Closing", 0.25}}));
}

} // namespace
} // namespace stage
