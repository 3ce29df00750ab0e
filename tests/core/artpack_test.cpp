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
    }
    void TearDown() override { fs::remove_all(folder); }

    std::string path(const std::string& name) const { return (folder / name).string(); }

    void write(const std::string& name, const std::string& text) const {
        std::ofstream(path(name), std::ios::binary) << text;
    }

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

    std::size_t fileCount() const {
        return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder), fs::directory_iterator()));
    }

    // The bitmap in the record, after a look at the record's header.
    Bytes unpack(const std::string& name) const {
        const Bytes record = read(name);
        EXPECT_EQ(std::string(record.begin(), record.begin() + 8), "CPX_HEAD");
        EXPECT_EQ(read32(record, 12), record.size() - 52);
        EXPECT_EQ(read32(record, 16), 1u);
        EXPECT_EQ(Bytes(record.begin() + 20, record.begin() + 52), Bytes(32));
        Bytes bitmap(read32(record, 8)); // throws when the record is too short
        uLongf size = bitmap.size();
        EXPECT_EQ(uncompress(bitmap.data(), &size, record.data() + 52, record.size() - 52), Z_OK);
        EXPECT_EQ(size, bitmap.size());
        return bitmap;
    }

    fs::path folder;
    std::string errors;
};

// biSize, width, height, planes and bit count, compression, image size, four unused.
void expectHeader(const Bytes& bitmap, std::uint32_t planesAndBits, std::uint32_t imageSize) {
    const std::uint32_t expected[] = {40, 3, 2, planesAndBits, 0, imageSize, 0, 0, 0, 0};
    for (std::size_t i = 0; i < std::size(expected); ++i)
        EXPECT_EQ(read32(bitmap, 4 * i), expected[i]) << "field " << i;
}

TEST_F(Artpack, RowsRunBottomUpInBlueGreenRedOrGrey) {
    write("in.svg", kSixPixels);
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
    write("in.svg", kSixPixels);
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
    for (const char* side : {"0", "257", "x"})
        EXPECT_EQ(run({"--icon", path("out.ico"), path("in.svg"), side}), 2) << side;
}

TEST_F(Artpack, FailuresSayWhyAndLeaveTheOutputAlone) {
    write("good.svg", kSixPixels);
    write("text.svg", "no drawing");
    write("relative.svg", R"(<svg xmlns="http://www.w3.org/2000/svg" width="100%" height="100%"/>)");
    write("fraction.svg", R"(<svg xmlns="http://www.w3.org/2000/svg" width="2.5" height="2"/>)");
    write("old.cpx", "older");
    fs::create_directories(path("folder/inside"));
    const std::size_t filesBefore = fileCount();
    const struct {
        const char* input;
        const char* size;
        const char* output;
        const char* named; // what the message must speak of
    } cases[] = {{"text.svg", "3x2", "old.cpx", "text.svg"},
                 {"relative.svg", "3x2", "old.cpx", "relative.svg"},
                 {"fraction.svg", "3x2", "old.cpx", "whole pixels"},
                 {"good.svg", "2x3", "old.cpx", "is 3 x 2 pixels, not 2 x 3"},
                 {"good.svg", "3x2", "folder", "folder"}};
    for (const auto& row : cases) {
        EXPECT_EQ(run({"--bits", "8", "--size", row.size, path(row.input), path(row.output)}), 1) << row.named;
        EXPECT_NE(errors.find(row.named), std::string::npos) << errors;
        EXPECT_EQ(std::count(errors.begin(), errors.end(), '\n'), 1) << errors;
        EXPECT_EQ(fileCount(), filesBefore) << row.named;
    }
    EXPECT_EQ(read("old.cpx"), (Bytes{'o', 'l', 'd', 'e', 'r'}));
}

TEST_F(Artpack, WhatIsNoCommandShowsTheUsage) {
    write("in.svg", kSixPixels);
    const std::string in = path("in.svg");
    const std::string out = path("out.cpx");
    const Arguments cases[] = {{},
                               {"--sheet", out},
                               {"--bits", "16", "--size", "3x2", in, out},
                               {"--bits", "8", "--size", "0x2", in, out},
                               {"--bits", "8", "--size", "3x2", in, out, out}};
    for (const Arguments& arguments : cases) {
        EXPECT_EQ(run(arguments), 2) << testing::PrintToString(arguments);
        EXPECT_EQ(errors.rfind("usage: ", 0), 0u) << errors;
    }
    EXPECT_FALSE(fs::exists(out));
}

} // namespace
