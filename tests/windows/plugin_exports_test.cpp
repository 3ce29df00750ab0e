// What a loader and a careful host see of the plugin file before any dialog opens: its headers, its exports and
// imports, and its answer to blocks of every size. Reads the file's own bytes and trusts no tool.
#include "recording_host.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <fstream>
#include <iterator>
#include <set>

namespace {

using Bytes = std::vector<std::uint8_t>;

class PluginFile : public testing::Test {
protected:
    void SetUp() override {
        library = LoadLibraryA("veldran1_x64.dll");
        ASSERT_NE(library, nullptr);
        char path[MAX_PATH] = "";
        GetModuleFileNameA(library, path, MAX_PATH);
        std::ifstream stream(path, std::ios::binary);
        bytes.assign(std::istreambuf_iterator<char>(stream), {});
        header = at<IMAGE_NT_HEADERS64>(static_cast<std::size_t>(at<IMAGE_DOS_HEADER>(0).e_lfanew));
        ASSERT_EQ(header.Signature, static_cast<DWORD>(IMAGE_NT_SIGNATURE));
    }
    void TearDown() override { FreeLibrary(library); }

    template <class Record>
    Record at(std::size_t offset) const {
        Record record{};
        if (offset + sizeof record > bytes.size())
            throw std::out_of_range("beyond the file's end");
        std::memcpy(&record, bytes.data() + offset, sizeof record);
        return record;
    }

    // The place in the file of what the loader puts at `address`.
    std::size_t offsetOf(DWORD address) const {
        const auto base = static_cast<std::size_t>(at<IMAGE_DOS_HEADER>(0).e_lfanew) + sizeof header;
        for (WORD i = 0; i < header.FileHeader.NumberOfSections; ++i) {
            const auto section = at<IMAGE_SECTION_HEADER>(base + i * sizeof(IMAGE_SECTION_HEADER));
            if (address >= section.VirtualAddress && address < section.VirtualAddress + section.SizeOfRawData)
                return address - section.VirtualAddress + section.PointerToRawData;
        }
        throw std::out_of_range("no section holds this address");
    }

    std::string textAt(DWORD address) const {
        const std::size_t offset = offsetOf(address);
        return std::string(bytes.begin() + static_cast<std::ptrdiff_t>(offset),
                           std::find(bytes.begin() + static_cast<std::ptrdiff_t>(offset), bytes.end(), 0));
    }

    DWORD directory(int index) const { return header.OptionalHeader.DataDirectory[index].VirtualAddress; }

    HMODULE library = nullptr;
    Bytes bytes;
    IMAGE_NT_HEADERS64 header{};
};

TEST_F(PluginFile, ExportsTheTwoEntriesAndNothingElse) {
    const auto exports = at<IMAGE_EXPORT_DIRECTORY>(offsetOf(directory(IMAGE_DIRECTORY_ENTRY_EXPORT)));
    EXPECT_EQ(exports.NumberOfFunctions, 2u);
    std::set<std::string> names;
    for (DWORD i = 0; i < exports.NumberOfNames; ++i)
        names.insert(textAt(at<DWORD>(offsetOf(exports.AddressOfNames) + 4 * i)));
    EXPECT_EQ(names, (std::set<std::string>{"PLUGIN16DoBuild", "PLUGIN16GetPluginParams"}));
}

TEST_F(PluginFile, ImportsWhatEveryWindowsHas) {
    const std::set<std::string> system = {"advapi32.dll", "comctl32.dll", "comdlg32.dll", "gdi32.dll",  "kernel32.dll",
                                          "msvcrt.dll",   "ole32.dll",    "shell32.dll",  "user32.dll", "winmm.dll"};
    int count = 0;
    for (std::size_t offset = offsetOf(directory(IMAGE_DIRECTORY_ENTRY_IMPORT));;
         offset += sizeof(IMAGE_IMPORT_DESCRIPTOR)) {
        const auto import = at<IMAGE_IMPORT_DESCRIPTOR>(offset);
        if (import.Name == 0)
            break;
        std::string name = textAt(import.Name);
        std::ranges::transform(name, name.begin(), [](char c) { return c >= 'A' && c <= 'Z' ? char(c + 32) : c; });
        EXPECT_TRUE(system.contains(name) || name.starts_with("api-ms-win-crt-")) << name;
        ++count;
    }
    EXPECT_GT(count, 3);
    EXPECT_EQ(directory(IMAGE_DIRECTORY_ENTRY_DELAY_IMPORT), 0u);
}

TEST_F(PluginFile, IsProtectedAndCarriesItsVersion) {
    EXPECT_EQ(header.FileHeader.Machine, IMAGE_FILE_MACHINE_AMD64);
    EXPECT_TRUE(header.FileHeader.Characteristics & IMAGE_FILE_DLL);
    EXPECT_FALSE(header.FileHeader.Characteristics & IMAGE_FILE_RELOCS_STRIPPED);
    const WORD protections = IMAGE_DLLCHARACTERISTICS_DYNAMIC_BASE | IMAGE_DLLCHARACTERISTICS_NX_COMPAT | 0x20;
    EXPECT_EQ(header.OptionalHeader.DllCharacteristics & protections, protections); // 0x20: high-entropy addresses
    EXPECT_NE(directory(IMAGE_DIRECTORY_ENTRY_BASERELOC), 0u);

    const HRSRC resource = FindResourceA(library, MAKEINTRESOURCEA(1), reinterpret_cast<LPCSTR>(RT_VERSION));
    ASSERT_NE(resource, nullptr);
    const auto* version = static_cast<const std::uint8_t*>(LockResource(LoadResource(library, resource)));
    VS_FIXEDFILEINFO fixed{};
    std::memcpy(&fixed, version + 40, sizeof fixed); // behind three words and the padded L"VS_VERSION_INFO"
    EXPECT_EQ(fixed.dwSignature, 0xFEEF04BDu);
    EXPECT_EQ(fixed.dwFileVersionMS, 2u << 16);
    EXPECT_EQ(fixed.dwFileVersionLS, 1u << 16);
}

TEST_F(PluginFile, PluginInfoIsFilledWithinItsSize) {
    const auto getParams = reinterpret_cast<GetPluginParamsFunction>(
        reinterpret_cast<void*>(GetProcAddress(library, "PLUGIN16GetPluginParams")));
    EXPECT_EQ(getParams(nullptr), 0);
    PluginInfo whole{};
    whole.size = sizeof whole;
    ASSERT_EQ(getParams(&whole), 1);
    const std::string credit(whole.credit, strnlen(whole.credit, sizeof whole.credit));
    EXPECT_EQ(credit.size(), 61u);
    for (const std::uint32_t size : {0u, 4u, 7u, 8u, 9u, 12u, 100u, 269u, 270u, 300u, 331u, 4096u}) {
        SCOPED_TRACE(size);
        Bytes block(4096 + 64, 0xCC);
        std::memcpy(block.data(), &size, 4);
        Bytes expected = block;
        if (size >= 8) {
            std::fill_n(expected.begin() + 4, size - 4, std::uint8_t{0});
            expected[5] = 0x10; // version 0x1000
        }
        // Texts end inside of the block, cut when they must be; everything else is zero.
        const auto put = [&](std::size_t offset, const std::string& text) {
            if (offset < size)
                std::copy_n(text.begin(), std::min(text.size(), size - offset - 1),
                            expected.begin() + static_cast<std::ptrdiff_t>(offset));
        };
        put(8, "Voltane #1");
        put(269, credit);
        EXPECT_EQ(getParams(reinterpret_cast<PluginInfo*>(block.data())), size >= 8 ? 1 : 0);
        EXPECT_EQ(block, expected);
    }
}

TEST(HostVersion, OnlyTheMajorByteCounts) {
    const struct {
        std::uint32_t version;
        int result;
    } cases[] = {{0x0FFF, 0}, {0x1000, 1}, {0xFF00, 1}, {0x00100000, 0}};
    for (const auto& row : cases) {
        SCOPED_TRACE(row.version);
        recording::Session session;
        session.version = row.version;
        const recording::Recording seen = recording::run(session);
        EXPECT_EQ(seen.result, row.result);
        EXPECT_EQ(seen.dialogsOpened, row.result);
        EXPECT_TRUE(seen.messages.empty());
        if (row.result == 1)
            EXPECT_TRUE(seen.boxes.empty());
        else {
            EXPECT_EQ(seen.boxes, std::vector<std::string>{
                                      "You need a newer version of Tavolin or Merrowin to support this plugin.\n\n"
                                      "Please visit the Korvel web page to update your software."});
            EXPECT_TRUE(seen.folder.empty()); // nothing was read or written
        }
    }
}

} // namespace
