// Writes what the search and the replay begin with: seeds FOLDER makes FOLDER/TARGET with a few small files for each
// target, and FOLDER/TARGET.dict with the words of those formats that have words.
#include "bitmap_bytes.h"
#include "mended_chunks.h"
#include "record_bytes.h"
#include "shown_pictures.h"
#include "wave_bytes.h"

#include "commands/arguments.h"
#include "formats/animation_writer.h"
#include "formats/gif/lzw.h"
#include "settings/settings_file.h"

#include <cstring>
#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <iomanip>
#include <random>
#include <sstream>
#include <string>
#include <string_view>

using namespace veldran;
using namespace std::string_view_literals;

namespace {

namespace fs = std::filesystem;

fs::path folder; // where everything goes

void write(const fs::path& file, std::string_view bytes) {
    fs::create_directories(file.parent_path());
    std::ofstream stream(file, std::ios::binary);
    stream << bytes;
    stream.exceptions(std::ios::failbit | std::ios::badbit);
    stream.flush();
}

void seed(const char* target, const std::string& name, std::string_view bytes) {
    write(folder / target / name, bytes);
}

void seed(const char* target, const std::string& name, const Bytes& bytes) {
    seed(target, name, std::string_view(reinterpret_cast<const char*>(bytes.data()), bytes.size()));
}

// One word a line, as libFuzzer reads them.
void dictionary(const char* target, const std::vector<std::string>& words) {
    std::ostringstream lines;
    lines << std::hex << std::setfill('0');
    for (const std::string& word : words) {
        lines << '"';
        for (const char c : word)
            lines << "\\x" << std::setw(2) << int{static_cast<unsigned char>(c)};
        lines << "\"\n";
    }
    write(folder / (std::string(target) + ".dict"), lines.str());
}

Bytes noise(std::size_t count, std::uint32_t start = 1) {
    std::minstd_rand random(start);
    Bytes bytes(count);
    std::ranges::generate(bytes, [&] { return static_cast<std::uint8_t>(random() >> 8); });
    return bytes;
}

template <class Tail = Bytes>
Bytes joined(Bytes head, const Tail& tail) {
    head.insert(head.end(), tail.begin(), tail.end());
    return head;
}

void seedSettings() {
    const std::string whole = writeSettings(PlugInSettings(), "Sat Nov 14 14:41:00 2026");
    seed("settings", "defaults", whole);
    seed("settings", "edited", "; mine\n[PlugIn]\nMainRadarSize=200\r\nMainRadarA = -5\nMainCountdownBez\n = 1\n\n");
    seed("settings", "long", "InstrumentFontName = " + std::string(300, 'x') + " MainDelay = 7\n\x1A MainDelay = 8\n");
    std::vector<std::string> words = {" = ", "\r\n"};
    for (const SettingRow& row : settingRows())
        words.emplace_back(row.key);
    dictionary("settings", words);
    words.insert(words.end(), {"[Voltane #1]\n", "[Markers]\n", "; delays in milliseconds\n", "\\\\"});
    dictionary("remembered", words);
}

void seedTexts() {
    seed("markers", "three", "Alpha,45,80\r\nBravo,359,100\n\n,0,0\rno number,x,\x1A,1,1\n");
    seed("markers", "far", "A,2147483648,-2147483649\nB, +7 ,-99999999999999999999, 5\n");
    const std::string_view curve = "0,0;50,1000;100,250";
    seed("points", "moved", joined({60, 2, 1, 1, 0, 0, 0, 0, 0, 0, 1, 1, 120, 0, 0xFF, 0xFF, 0, 0}, curve));
    seed("points", "inserted and removed", joined({9, 2, 0, 0, 60, 0, 9, 0, 0, 0, 2, 1, 0, 0, 0, 0, 0, 0}, curve));
    seed("points", "wild", joined({200, 0}, " 5 , -7;;3,99999999999;x,1"sv));
    seed("data_pad_text", "lines", joined({1, 0}, "first line\r\n\tsecond\n\n" + std::string(300, 'w') + "\n!"));
    seed("data_pad_text", "codes", joined({0, 0}, noise(400)));
    seed("batch", "lines",
         "\xEF\xBB\xBF# renders\nrender --effect radar --set \"MainRadarMarkers=a \\\" b\" --out r.gif --out r.apng\r\n"
         "render --like r.gif --loop 3 --matte #FFFFFF --threshold 9 --as png --json\ninspect \"a b.gif\"\n");
    std::vector<std::string> words = {"render ", "inspect ", "\"", "\\\""};
    std::istringstream usage(stage::usageText(stage::Verb::Render));
    for (std::string word; usage >> word;)
        if (word.starts_with("--"))
            words.push_back(' ' + word + ' ');
    dictionary("batch", words);
    seed("remembered", "radar",
         "[Voltane #1]\n; delays in hundredths of a second\nMainRadarSize = 200\nMainRadarPadding = 3\n"
         "InstrumentFontName = Courier\nMainEffect = 15\n[Markers]\nAlpha,45,80\n");
    seed("remembered", "two keys of one value", "InstrumentFontBold = 3\nLabelLeft = L\nMainEffect = 0\n");
    seed("remembered", "sound", "MainVURoundSound = C:\\a b.wav\r\nUnknown = 1\nMainEffect = 0\n");
}

void seedSounds() {
    for (const int channels : {1, 2, 3})
        for (const int bits : {8, 16}) {
            const WaveFormat format = pcm(channels, bits);
            Bytes bytes(sizeof format);
            std::memcpy(bytes.data(), &format, sizeof format);
            bytes = joined(bytes, Bytes{7, static_cast<std::uint8_t>(channels * 5), 3, 0, 200, 0});
            bytes = joined(bytes, channels == 1 ? noise(600) : words({100, -200, 32767, -32768, 5, 6, 7}));
            seed("sound", std::to_string(channels) + " channels of " + std::to_string(bits), bytes);
        }
}

// With bytes for a whole colour table, masks, the rest of the header and the rows.
Bytes bitmap(const BitmapLayout& layout) {
    const Bytes masks = {0, 0xF8, 0, 0, 0xE0, 7, 0, 0, 0x1F, 0, 0, 0, 0, 0, 0, 0xFF};
    const std::size_t rows =
        bitmapStride(layout.width, layout.bits) * static_cast<std::size_t>(std::abs(layout.height));
    const std::size_t rest = layout.headerBytes - 40 + colourTableBytes(layout.bits) + rows;
    return bitmapOf(layout, layout.compression == 0 ? noise(rest) : joined(masks, noise(rest)));
}

void seedBitmaps() {
    for (const int bits : {1, 4, 8, 16, 24, 32}) {
        seed("foreign_bitmap", "plain " + std::to_string(bits), bitmap({bits, 5, 3}));
        seed("foreign_bitmap", "top-down " + std::to_string(bits), bitmap({bits, 9, -2, 0, 0, 124}));
        if (bits != 4 && bits != 16)
            seed("packed_record", "bitmap " + std::to_string(bits), joined({0, 9, 1}, bitmap({bits, 4, 3})));
    }
    seed("foreign_bitmap", "masks 16", bitmap({16, 3, 3, 3}));
    seed("foreign_bitmap", "masks 32", bitmap({32, 3, 3, 6, 0, 108}));
    seed("packed_record", "record", joined({0, 9, 0}, makeRecord(bitmap({8, 4, 3}))));
}

// Colours from noise, so that there are many colours, few or holes.
stage::Animation animation(std::uint8_t mask, bool hasHoles) {
    stage::Animation animation{9, 7, {}, 0, {}, "comment", stage::Remembered{"MainEffect = 1\n", "A,1,2\n"}};
    for (std::uint32_t frame = 0; frame < 3; ++frame) {
        stage::Picture picture{9, 7, {}};
        for (const std::uint8_t byte : noise(63, 1 + frame / 2)) {
            const std::uint32_t opacity = !hasHoles ? 255 : byte % 3 == 0 ? 0 : mask == 255 ? byte : 255;
            picture.pixels.push_back(stage::pixelOf({std::uint8_t(byte & mask), byte, 30}, opacity));
        }
        animation.frames.push_back(frameOf(picture));
        animation.frames.back().delay = 40 + 10 * frame;
    }
    return animation;
}

void seedWritten() {
    const std::tuple<const char*, std::uint8_t, bool> looks[] = {
        {"few", 0x10, false}, {"holes", 0x30, true}, {"many", 255, false}, {"opacity", 255, true}};
    const std::pair<const char*, stage::OutputFormat> formats[] = {
        {"gif", stage::OutputFormat::Gif}, {"png", stage::OutputFormat::Apng}, {"mng", stage::OutputFormat::Mng}};
    for (const auto& [name, mask, hasHoles] : looks)
        for (const auto& [target, format] : formats) {
            stage::MemorySink sink;
            stage::writeAnimation(animation(mask, hasHoles), format, {}, sink);
            seed(target, name, sink.bytes());
        }
}

void seedGifs() {
    // Interlaced, with a palette of its own, an end inside of it, and no trailer.
    const auto head = "GIF87a\5\0\t\0\x80\1\0\1\2\3\4\5\6,\0\0\0\0\5\0\t\0\xC0\0\x28\x50\x78\xA0\xC8\2"sv;
    Bytes indices = noise(45);
    for (std::uint8_t& index : indices)
        index &= 1;
    const Bytes codes = stage::compressLzw({indices}, 2);
    Bytes gif = joined(joined({}, head), Bytes{static_cast<std::uint8_t>(codes.size())});
    seed("gif", "interlaced", joined(joined(gif, codes), Bytes{0}));
    dictionary("gif", {"GIF89a", "GIF87a", std::string("!\xF9\4\5\1\0\1\0", 8), "!\xFF\vNETSCAPE2.0\3\1", "!\xFE",
                       std::string(",\0\0\0\0", 5), "[Voltane #1]\n", ";"});
    seed("coders", "indices", joined({2, 1, 1, 2, 0, 0, 1, 1, 0, 9}, noise(300)));
    seed("coders", "noise", joined({0, 0, 2, 0x80, 0, 0xF0, 3, 0, 0}, noise(200)));
    seed("coders", "text",
         joined({0, 0, 1, 0, 0, 0, 0}, "a text that is a text and a text again, aaaaaaaaaaaaaaaaaaaaa"sv));
}

// More than the picture needs, so that sides may grow: rows of all filters, for mendedChunks to compress.
Bytes rawPixels(std::size_t rowBytes) {
    Bytes bytes = {stage::kRawPixels};
    for (std::uint8_t row = 0; row < 24; ++row)
        bytes = joined(joined(bytes, {static_cast<std::uint8_t>(row % 5)}), noise(rowBytes, row));
    return bytes;
}

void putPicture(Bytes& file, std::uint8_t depth, std::uint8_t colour, bool isInterlaced) {
    constexpr std::size_t kSamples[] = {1, 0, 3, 1, 2, 0, 4};
    constexpr std::uint8_t kSide = 5;
    stage::putChunk(file, "IHDR",
                    Bytes{0, 0, 0, kSide, 0, 0, 0, kSide, depth, colour, 0, 0, std::uint8_t(isInterlaced)});
    if (colour == 3) {
        stage::putChunk(file, "PLTE", noise(3 * (std::size_t{1} << depth)));
        stage::putChunk(file, "tRNS", noise(2));
    } else if (colour != 4 && colour != 6) {
        stage::putChunk(file, "tRNS", Bytes(2 * kSamples[colour], 1));
    }
    stage::putChunk(file, "IDAT", rawPixels((kSide * kSamples[colour] * depth + 7) / 8));
    stage::putChunk(file, "IEND", {});
}

void seedPngs() {
    const std::pair<std::uint8_t, std::uint8_t> looks[] = {{1, 0}, {2, 0},  {4, 0},  {8, 0}, {16, 0},
                                                           {8, 2}, {16, 2}, {1, 3},  {2, 3}, {4, 3},
                                                           {8, 3}, {8, 4},  {16, 4}, {8, 6}, {16, 6}};
    for (const auto& [depth, colour] : looks) {
        Bytes file(std::begin(stage::kPngSignature), std::end(stage::kPngSignature));
        putPicture(file, depth, colour, depth + colour % 2 > 4);
        seed("png", "raw " + std::to_string(depth) + " " + std::to_string(colour), file);
    }
    std::vector<std::string> words = {"IHDR", "PLTE",    "tRNS",       "IDAT",           "IEND", "tEXt", "zTXt",
                                      "iTXt", "Comment", "Voltane #1", "[Voltane #1]\n", "acTL", "fcTL", "fdAT"};
    dictionary("png", words);
    words.insert(words.end(), {"MHDR", "MEND", "TERM", "FRAM", "DEFI", "BACK", "SAVE", "SEEK"});
    dictionary("mng", words);

    Bytes mng(std::begin(stage::kMngSignature), std::end(stage::kMngSignature));
    stage::putChunk(mng, "MHDR",
                    joined({0, 0, 0, 9, 0, 0, 0, 9, 0, 0, 0, 100}, Bytes(16))); // 9 x 9, 100 ticks a second
    stage::putChunk(mng, "TERM", Bytes{3, 0, 0, 0, 0, 0, 0, 0, 0, 4});
    stage::putChunk(mng, "PLTE", noise(12));
    stage::putChunk(mng, "tRNS", noise(2));
    stage::putChunk(mng, "FRAM", Bytes{4, 'n', 0, 2, 0, 0, 0, 0, 0, 0, 7});
    stage::putChunk(mng, "DEFI", Bytes{0, 0, 0, 0, 0, 0, 0, 2, 0, 0, 0, 3});
    putPicture(mng, 8, 2, true);
    putPicture(mng, 4, 3, false);
    stage::putChunk(mng, "MEND", {});
    seed("mng", "raw", mng);
}

// Sides, frames, plays; a frame is its delay, the number of its areas, and for each its place, content and four bytes.
void seedAnimations() {
    for (std::uint8_t content = 0; content < 6; ++content) {
        Bytes mixed = {12, 9, 2, 3, 0};
        Bytes alone = {19, 19, 1, 3, 0}; // 400 pixels, for more colours than a palette has
        for (std::uint8_t frame = 0; frame < 3; ++frame) {
            mixed.insert(mixed.end(), {7, 2, 0, 0, 19, 19, content, 9, 0x3F, 0, 0});
            mixed.insert(mixed.end(), {frame, 2, 5, 4, static_cast<std::uint8_t>(frame + content), 50, 255, 1, 2});
            alone.insert(alone.end(), {7, 1, 0, 0, 19, 19, content, frame, 0x3F, 0, 0});
        }
        seed("animation", "content " + std::to_string(content), mixed);
        seed("animation", "content " + std::to_string(content) + " alone", alone);
    }
}

} // namespace

int main(int count, char** arguments) {
    if (count != 2)
        return 2;
    folder = arguments[1];
    seedSettings();
    seedTexts();
    seedSounds();
    seedBitmaps();
    seedWritten();
    seedGifs();
    seedPngs();
    seedAnimations();
    return 0;
}
