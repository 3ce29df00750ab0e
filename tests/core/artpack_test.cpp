// The artwork packer from the command line to the bytes of the record.
// Reads the records with zlib and plain offsets alone, as any other program would.
#include "artpack/command_line.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;
using Bytes = std::vector<std::uint8_t>;
using Arguments = std::vector<std::string>;

std::uint32_t read32(const Bytes& bytes, std::size_t offset) {
    return static_cast<std::uint32_t>(bytes.at(offset) | bytes.at(offset + 1) << 8 | bytes.at(offset + 2) << 16) |
           static_cast<std::uint32_t>(bytes.at(offset + 3)) << 24;
}

// Three columns, two rows: red, lime, blue over white, black, and nothing drawn but a half-opaque black.
constexpr const char* kSixPixels = R"(<svg xmlns="http://www.w3.org/2000/svg" width="3" height="2">
  <rect width="1" height="1" fill="#f00"/><rect x="1" width="1" height="1" fill="#0f0"/>
  <rect x="2" width="1" height="1" fill="#00f"/><rect x="1" y="1" width="1" height="1" fill="#000"/>
  <rect x="2" y="1" width="1" height="1" fill="#000" fill-opacity="0.4"/></svg>)";

class Artpack : public testing::Test {
protected:
    void SetUp() override {
        const auto* test = testing::UnitTest::GetInstance()->current_test_info();
        folder = fs::path(testing::TempDir()) / (std::string("artpack_") + test->name());
        fs::remove_all(folder);
        fs::create_directories(folder);
        write("in.svg", kSixPixels);
    }
    void TearDown() override { fs::remove_all(folder); }

    std::string path(const std::string& name) const { return (folder / name).string(); }

    void write(const std::string& name, const std::string& text) const { std::ofstream(path(name)) << text; }

    Bytes read(const std::string& name) const {
        std::ifstream file(path(name), std::ios::binary);
        return Bytes(std::istreambuf_iterator<char>(file), {});
    }

    int run(const Arguments& arguments) {
        std::ostringstream stream;
        const int code = artpack::run(arguments, stream);
        errors = stream.str();
        return code;
    }

    // The bitmap in the record, after a look at the record's header.
    Bytes unpack(const std::string& name) const {
        const Bytes record = read(name);
        EXPECT_EQ(std::string(record.begin(), record.begin() + 8), "CPX_HEAD");
        EXPECT_TRUE(read32(record, 12) == record.size() - 52 && read32(record, 16) == 1);
        EXPECT_EQ(Bytes(record.begin() + 20, record.begin() + 52), Bytes(32));
        Bytes bitmap(read32(record, 8)); // throws when the record is too short
        uLongf size = bitmap.size();
        EXPECT_EQ(uncompress(bitmap.data(), &size, record.data() + 52, record.size() - 52), Z_OK);
        return bitmap;
    }

    fs::path folder;
    std::string errors;
};

// Size, width, height, planes and bit count, compression, image size, four unused.
void expectHeader(const Bytes& bitmap, std::uint32_t planesAndBits, std::uint32_t imageSize) {
    std::vector<std::uint32_t> fields;
    for (std::size_t at = 0; at < 40; at += 4)
        fields.push_back(read32(bitmap, at));
    EXPECT_EQ(fields, (std::vector<std::uint32_t>{40, 3, 2, planesAndBits, 0, imageSize, 0, 0, 0, 0}));
}

TEST_F(Artpack, RowsRunBottomUpInBlueGreenRedOrGrey) {
    ASSERT_EQ(run({"--bits", "24", "--size", "3x2", path("in.svg"), path("out.cpx")}), 0) << errors;
    ASSERT_EQ(run({"--bits", "24", "--size", "3x2", path("in.svg"), path("again.cpx")}), 0) << errors;
    EXPECT_EQ(read("out.cpx"), read("again.cpx"));
    const Bytes colour = unpack("out.cpx");
    ASSERT_EQ(colour.size(), 40u + 2 * 12);
    expectHeader(colour, 1 | 24 << 16, 24);
    // 60 % of white's 255 is 153. Nine bytes of pixels, three of padding.
    const Bytes rows = {255, 255, 255, 0, 0, 0, 153, 153, 153, 0, 0, 0, 0, 0, 255, 0, 255, 0, 255, 0, 0, 0, 0, 0};
    EXPECT_EQ(Bytes(colour.begin() + 40, colour.end()), rows);

    ASSERT_EQ(run({"--size", "3x2", "--bits", "8", path("in.svg"), path("out.cpx")}), 0) << errors;
    const Bytes grey = unpack("out.cpx");
    ASSERT_EQ(grey.size(), 40u + 1024 + 2 * 4);
    expectHeader(grey, 1 | 8 << 16, 8);
    for (std::uint32_t i = 0; i < 256; ++i)
        EXPECT_EQ(read32(grey, 40 + 4 * i), i * 0x010101) << "entry " << i;
    // Of 255: 0.299 is 76.245, 0.587 is 149.685, 0.114 is 29.07.
    EXPECT_EQ(Bytes(grey.begin() + 1064, grey.end()), (Bytes{255, 0, 153, 0, 76, 150, 29, 0}));
}

// The directory of the icon file leads to PNG files of the sizes that it names.
TEST_F(Artpack, IconsHoldEverySize) {
    ASSERT_EQ(run({"--icon", path("out.ico"), path("in.svg"), "16", "256"}), 0) << errors;
    const Bytes icon = read("out.ico");
    ASSERT_GT(icon.size(), 38u);
    EXPECT_EQ(Bytes(icon.begin(), icon.begin() + 8), (Bytes{0, 0, 1, 0, 2, 0, 16, 16}));
    EXPECT_EQ(icon[22], 0); // 256
    const std::size_t ends[] = {read32(icon, 34), icon.size()};
    for (const std::size_t entry : {0u, 1u}) {
        const std::size_t begin = read32(icon, 18 + 16 * entry);
        EXPECT_EQ(begin + read32(icon, 14 + 16 * entry), ends[entry]);
        ASSERT_LT(begin + 20, icon.size());
        EXPECT_EQ(Bytes(icon.begin() + static_cast<std::ptrdiff_t>(begin) + 1,
                        icon.begin() + static_cast<std::ptrdiff_t>(begin) + 4),
                  (Bytes{'P', 'N', 'G'}));
        EXPECT_EQ(icon[begin + 18] * 256 + icon[begin + 19], entry == 0 ? 16 : 256); // big-endian width
    }
}

TEST_F(Artpack, FailuresSayWhyAndLeaveTheOutputAlone) {
    write("text.svg", "no drawing");
    write("relative.svg", R"(<svg xmlns="http://www.w3.org/2000/svg" width="100%" height="100%"/>)");
    write("fraction.svg", R"(<svg xmlns="http://www.w3.org/2000/svg" width="2.5" height="2"/>)");
    write("old.cpx", "older");
    fs::create_directories(path("folder/inside"));
    const std::string in = path("in.svg"), old = path("old.cpx");
    const std::tuple<int, Arguments, const char*> cases[] = {
        {1, {"--bits", "8", "--size", "3x2", path("text.svg"), old}, "text.svg"},
        {1, {"--bits", "8", "--size", "3x2", path("relative.svg"), old}, "relative.svg"},
        {1, {"--bits", "8", "--size", "3x2", path("fraction.svg"), old}, "whole pixels"},
        {1, {"--bits", "8", "--size", "2x3", in, old}, "is 3 x 2 pixels, not 2 x 3"},
        {1, {"--bits", "8", "--size", "3x2", in, path("folder")}, "folder"},
        {2, {}, "usage: "},
        {2, {"--sheet", old}, "usage: "},
        {2, {"--bits", "16", "--size", "3x2", in, old}, "usage: "},
        {2, {"--bits", "8", "--size", "0x2", in, old}, "usage: "},
        {2, {"--bits", "8", "--size", "3x2", in, old, old}, "usage: "},
        {2, {"--icon", old, in, "0"}, "usage: "},
        {2, {"--icon", old, in, "257"}, "usage: "},
        {2, {"--icon", old, in, "x"}, "usage: "}};
    for (const auto& [code, arguments, said] : cases) {
        EXPECT_EQ(run(arguments), code) << testing::PrintToString(arguments);
        EXPECT_NE(errors.find(said), std::string::npos) << errors;
        EXPECT_TRUE(code == 2 || errors.find('\n') == errors.size() - 1) << errors; // one line
    }
    EXPECT_EQ(std::distance(fs::directory_iterator(folder), {}), 6); // what was written above
    EXPECT_EQ(read("old.cpx"), (Bytes{'o', 'l', 'd', 'e', 'r'}));
}

} // namespace
