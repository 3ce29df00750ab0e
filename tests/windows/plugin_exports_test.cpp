// What a loader and a careful host see of the built files before any dialog opens: headers, exports and imports; and
// the plugin's answer to blocks of every size. Reads the files' own bytes and trusts no tool.
#include "recording_host.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <fstream>
#include <iterator>
#include <set>

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr char kPlugin[] = "veldran1_x64.dll";
constexpr char kHost[] = "stage.exe";

// A built file beside this program.
class BuiltFile {
public:
    explicit BuiltFile(const std::string& name) {
        char path[MAX_PATH] = "";
        GetModuleFileNameA(nullptr, path, MAX_PATH);
        const std::string own = path;
        std::ifstream stream(own.substr(0, own.find_last_of('\\') + 1) + name, std::ios::binary);
        bytes.assign(std::istreambuf_iterator<char>(stream), {});
        header = at<IMAGE_NT_HEADERS64>(static_cast<std::size_t>(at<IMAGE_DOS_HEADER>(0).e_lfanew));
        if (header.Signature != static_cast<DWORD>(IMAGE_NT_SIGNATURE))
            throw std::runtime_error("no program: " + name);
    }

    template <class Record>
    Record at(std::size_t offset) const {
        Record record{};
        if (offset + sizeof record > bytes.size())
            throw std::out_of_range("beyond the file's end");
        std::memcpy(&record, bytes.data() + offset, sizeof record);
        return record;
    }

    std::vector<IMAGE_SECTION_HEADER> sections() const {
        const auto base = static_cast<std::size_t>(at<IMAGE_DOS_HEADER>(0).e_lfanew) + sizeof header;
        std::vector<IMAGE_SECTION_HEADER> all;
        for (WORD i = 0; i < header.FileHeader.NumberOfSections; ++i)
            all.push_back(at<IMAGE_SECTION_HEADER>(base + i * sizeof(IMAGE_SECTION_HEADER)));
        return all;
    }

    // The place in the file of what the loader puts at `address`.
    std::size_t offsetOf(DWORD address) const {
        for (const IMAGE_SECTION_HEADER& section : sections())
            if (address >= section.VirtualAddress && address < section.VirtualAddress + section.SizeOfRawData)
                return address - section.VirtualAddress + section.PointerToRawData;
        throw std::out_of_range("no section holds this address");
    }

    std::string textAt(DWORD address) const {
        const std::size_t offset = offsetOf(address);
        return std::string(bytes.begin() + static_cast<std::ptrdiff_t>(offset),
                           std::find(bytes.begin() + static_cast<std::ptrdiff_t>(offset), bytes.end(), 0));
    }

    DWORD directory(int index) const { return header.OptionalHeader.DataDirectory[index].VirtualAddress; }

    bool holds(std::string_view text) const {
        return std::search(bytes.begin(), bytes.end(), text.begin(), text.end()) != bytes.end();
    }

    // The libraries that it wants, in small letters.
    std::set<std::string> imports() const {
        std::set<std::string> names;
        for (std::size_t offset = offsetOf(directory(IMAGE_DIRECTORY_ENTRY_IMPORT));;
             offset += sizeof(IMAGE_IMPORT_DESCRIPTOR)) {
            const auto import = at<IMAGE_IMPORT_DESCRIPTOR>(offset);
            if (import.Name == 0)
                return names;
            std::string name = textAt(import.Name);
            std::ranges::transform(name, name.begin(), [](char c) { return c >= 'A' && c <= 'Z' ? char(c + 32) : c; });
            names.insert(name);
        }
    }

    Bytes bytes;
    IMAGE_NT_HEADERS64 header{};
};

TEST(BuiltFiles, PluginExportsTwoEntriesAndNothingElse) {
    const BuiltFile file(kPlugin);
    const auto exports = file.at<IMAGE_EXPORT_DIRECTORY>(file.offsetOf(file.directory(IMAGE_DIRECTORY_ENTRY_EXPORT)));
    EXPECT_EQ(exports.NumberOfFunctions, 2u);
    std::set<std::string> names;
    for (DWORD i = 0; i < exports.NumberOfNames; ++i)
        names.insert(file.textAt(file.at<DWORD>(file.offsetOf(exports.AddressOfNames) + 4 * i)));
    EXPECT_EQ(names, (std::set<std::string>{"PLUGIN16DoBuild", "PLUGIN16GetPluginParams"}));
}

TEST(BuiltFiles, ImportWhatEveryWindowsHas) {
    const std::set<std::string> system = {"advapi32.dll", "comctl32.dll", "comdlg32.dll", "gdi32.dll",
                                          "kernel32.dll", "msvcrt.dll",   "ole32.dll",    "shell32.dll",
                                          "shlwapi.dll",  "user32.dll",   "winmm.dll"};
    for (const char* name : {kPlugin, kHost}) {
        const BuiltFile file(name);
        const std::set<std::string> imports = file.imports();
        EXPECT_GT(imports.size(), 3U);
        for (const std::string& library : imports)
            EXPECT_TRUE(system.contains(library) || library.starts_with("api-ms-win-crt-")) << name << ": " << library;
        EXPECT_EQ(file.directory(IMAGE_DIRECTORY_ENTRY_DELAY_IMPORT), 0u);
    }
}

TEST(BuiltFiles, AreProtected) {
    const WORD wanted = IMAGE_DLLCHARACTERISTICS_DYNAMIC_BASE | IMAGE_DLLCHARACTERISTICS_NX_COMPAT | 0x20;
    for (const char* name : {kPlugin, kHost}) {
        SCOPED_TRACE(name);
        const BuiltFile file(name);
        EXPECT_EQ(file.header.FileHeader.Machine, IMAGE_FILE_MACHINE_AMD64);
        EXPECT_FALSE(file.header.FileHeader.Characteristics & IMAGE_FILE_RELOCS_STRIPPED);
        EXPECT_EQ(file.header.OptionalHeader.DllCharacteristics & wanted, wanted); // 0x20: high-entropy addresses
        EXPECT_NE(file.directory(IMAGE_DIRECTORY_ENTRY_BASERELOC), 0u);
        int executable = 0;
        for (const IMAGE_SECTION_HEADER& section : file.sections()) {
            const bool isCode = (section.Characteristics & IMAGE_SCN_MEM_EXECUTE) != 0;
            executable += isCode ? 1 : 0;
            EXPECT_FALSE(isCode && (section.Characteristics & IMAGE_SCN_MEM_WRITE) != 0) << section.Name;
        }
        EXPECT_EQ(executable, 1);
        EXPECT_TRUE(file.holds("stack smashing detected")); // what the guard of return addresses says
    }
    EXPECT_TRUE(BuiltFile(kPlugin).header.FileHeader.Characteristics & IMAGE_FILE_DLL);
}

class LoadedPlugin : public testing::Test {
protected:
    ~LoadedPlugin() override { FreeLibrary(library); }

    HMODULE library = LoadLibraryA(kPlugin);
};

TEST_F(LoadedPlugin, CarriesItsVersion) {
    const HRSRC resource = FindResourceA(library, MAKEINTRESOURCEA(1), reinterpret_cast<LPCSTR>(RT_VERSION));
    ASSERT_NE(resource, nullptr);
    const auto* version = static_cast<const std::uint8_t*>(LockResource(LoadResource(library, resource)));
    VS_FIXEDFILEINFO fixed{};
    std::memcpy(&fixed, version + 40, sizeof fixed); // behind three words and the padded L"VS_VERSION_INFO"
    EXPECT_EQ(fixed.dwSignature, 0xFEEF04BDu);
    EXPECT_EQ(fixed.dwFileVersionMS, 2u << 16);
    EXPECT_EQ(fixed.dwFileVersionLS, 1u << 16);
}

TEST_F(LoadedPlugin, PluginInfoIsFilledWithinItsSize) {
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
