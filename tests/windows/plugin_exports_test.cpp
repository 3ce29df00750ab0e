// What a loader and a careful host see of the built files before any dialog opens: headers, exports and imports; and
// the plugin's answer to blocks of every size. Reads the images' own bytes and trusts no tool.
#include "recording_host.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <set>
#include <span>

namespace {

constexpr char kPlugin[] = "veldran1_x64.dll";
constexpr char kHost[] = "stage.exe";

// A built file as the loader puts it into memory, without running anything of it.
class BuiltFile {
public:
    explicit BuiltFile(const char* name) : image_(LoadLibraryExA(name, nullptr, DONT_RESOLVE_DLL_REFERENCES)) {
        if (image_ == nullptr || header().Signature != static_cast<DWORD>(IMAGE_NT_SIGNATURE))
            throw std::runtime_error(std::string("no program: ") + name);
    }
    BuiltFile(const BuiltFile&) = delete;
    ~BuiltFile() { FreeLibrary(image_); }

    template <class Record>
    const Record* at(DWORD address) const {
        return reinterpret_cast<const Record*>(reinterpret_cast<const std::uint8_t*>(image_) + address);
    }
    const IMAGE_NT_HEADERS64& header() const {
        return *at<IMAGE_NT_HEADERS64>(static_cast<DWORD>(at<IMAGE_DOS_HEADER>(0)->e_lfanew));
    }
    DWORD directory(int index) const { return header().OptionalHeader.DataDirectory[index].VirtualAddress; }
    std::span<const IMAGE_SECTION_HEADER> sections() const {
        return {IMAGE_FIRST_SECTION(&header()), header().FileHeader.NumberOfSections};
    }
    std::string_view whole() const { return {at<char>(0), header().OptionalHeader.SizeOfImage}; }

private:
    HMODULE image_;
};

TEST(BuiltFiles, PluginExportsTwoEntriesAndNothingElse) {
    const BuiltFile file(kPlugin);
    const auto* exports = file.at<IMAGE_EXPORT_DIRECTORY>(file.directory(IMAGE_DIRECTORY_ENTRY_EXPORT));
    EXPECT_EQ(exports->NumberOfFunctions, 2u);
    std::set<std::string> names;
    for (DWORD i = 0; i < exports->NumberOfNames; ++i)
        names.insert(file.at<char>(file.at<DWORD>(exports->AddressOfNames)[i]));
    EXPECT_EQ(names, (std::set<std::string>{"PLUGIN16DoBuild", "PLUGIN16GetPluginParams"}));
}

TEST(BuiltFiles, ImportWhatEveryWindowsHas) {
    const std::set<std::string> system = {"advapi32.dll", "comctl32.dll", "comdlg32.dll", "gdi32.dll",
                                          "kernel32.dll", "msvcrt.dll",   "ole32.dll",    "shell32.dll",
                                          "shlwapi.dll",  "user32.dll",   "winmm.dll"};
    for (const char* name : {kPlugin, kHost}) {
        const BuiltFile file(name);
        const auto* import = file.at<IMAGE_IMPORT_DESCRIPTOR>(file.directory(IMAGE_DIRECTORY_ENTRY_IMPORT));
        EXPECT_TRUE(import[0].Name != 0 && import[1].Name != 0 && import[2].Name != 0);
        for (; import->Name != 0; ++import) {
            std::string library = file.at<char>(import->Name);
            CharLowerA(library.data());
            EXPECT_TRUE(system.contains(library) || library.starts_with("api-ms-win-crt-")) << name << ": " << library;
        }
        EXPECT_EQ(file.directory(IMAGE_DIRECTORY_ENTRY_DELAY_IMPORT), 0u);
    }
}

TEST(BuiltFiles, AreProtected) {
    const WORD wanted = IMAGE_DLLCHARACTERISTICS_DYNAMIC_BASE | IMAGE_DLLCHARACTERISTICS_NX_COMPAT | 0x20;
    for (const char* name : {kPlugin, kHost}) {
        SCOPED_TRACE(name);
        const BuiltFile file(name);
        EXPECT_EQ(file.header().FileHeader.Machine, IMAGE_FILE_MACHINE_AMD64);
        EXPECT_FALSE(file.header().FileHeader.Characteristics & IMAGE_FILE_RELOCS_STRIPPED);
        EXPECT_EQ(file.header().OptionalHeader.DllCharacteristics & wanted, wanted); // 0x20: high-entropy addresses
        EXPECT_NE(file.directory(IMAGE_DIRECTORY_ENTRY_BASERELOC), 0u);
        int executable = 0;
        for (const IMAGE_SECTION_HEADER& section : file.sections()) {
            const bool isCode = (section.Characteristics & IMAGE_SCN_MEM_EXECUTE) != 0;
            executable += isCode ? 1 : 0;
            EXPECT_FALSE(isCode && (section.Characteristics & IMAGE_SCN_MEM_WRITE) != 0) << section.Name;
        }
        EXPECT_EQ(executable, 1);
        EXPECT_NE(file.whole().find("stack smashing detected"),
                  std::string_view::npos); // what the guard of return addresses says
    }
    EXPECT_TRUE(BuiltFile(kPlugin).header().FileHeader.Characteristics & IMAGE_FILE_DLL);
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
        std::vector<std::uint8_t> block(4096 + 64, 0xCC);
        std::memcpy(block.data(), &size, 4);
        std::vector<std::uint8_t> expected = block;
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
    const std::vector<std::string> refusal = {
        "You need a newer version of Tavolin or Merrowin to support this plugin.\n\n"
        "Please visit the Korvel web page to update your software."};
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
        EXPECT_EQ(seen.folder.empty(), row.result == 0); // nothing was read or written
        EXPECT_EQ(seen.boxes, row.result == 1 ? std::vector<std::string>() : refusal);
    }
}

} // namespace
