// Reading is forgiving to the byte, because people edit the file by hand; writing is plain.
#include "settings/settings_file.h"

#include <algorithm>

namespace veldran {
namespace {

// The reader's buffer holds 260 bytes, one of them for the terminating NUL.
constexpr std::size_t kPieceLimit = 259;
constexpr char kEndOfText = 26;

bool isControl(char c) {
    return static_cast<unsigned char>(c) < 32;
}

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

std::string_view skip(std::string_view text, char c) {
    return text.substr(std::min(text.find_first_not_of(c), text.size()));
}

// Splits off the next piece of `rest`: up to and including a line feed, but no more than kPieceLimit bytes. A CR LF
// pair counts as one byte, since text mode delivers it as one.
std::string_view takePiece(std::string_view& rest) {
    std::size_t length = 0;
    for (std::size_t counted = 0; counted < kPieceLimit && length < rest.size(); ++counted) {
        const bool pair = rest[length] == '\r' && length + 1 < rest.size() && rest[length + 1] == '\n';
        length += pair ? 2 : 1;
        if (rest[length - 1] == '\n')
            break;
    }
    const std::string_view piece = rest.substr(0, length);
    rest.remove_prefix(length);
    return piece;
}

std::uint32_t parseNumber(std::string_view text) {
    const bool negative = text.starts_with('-');
    if (negative || text.starts_with('+'))
        text.remove_prefix(1);
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < text.size() && isDigit(text[i]); ++i)
        value = value * 10u + static_cast<std::uint32_t>(text[i] - '0');
    return negative ? 0u - value : value;
}

const SettingRow* findRow(std::string_view key) {
    for (const SettingRow& row : settingRows())
        if (row.isReadable() && std::string_view(row.key).starts_with(key))
            return &row;
    return nullptr;
}

void applyLine(std::string_view line, PlugInSettings& settings) {
    line = line.substr(0, static_cast<std::size_t>(std::ranges::find_if(line, isControl) - line.begin()));
    const std::size_t keyLength = std::min(line.find_first_of(" ="), line.size());
    const SettingRow* row = findRow(line.substr(0, keyLength));
    if (row == nullptr)
        return;
    const std::string_view value = skip(skip(skip(line.substr(keyLength), ' '), '='), ' ');
    if (row->isText())
        settings.setText(row->storage, value);
    else
        settings.setNumber(row->storage, parseNumber(value));
}

} // namespace

void readSettings(std::string_view file, PlugInSettings& settings) {
    std::string_view rest = file.substr(0, file.find(kEndOfText));
    while (!rest.empty())
        applyLine(takePiece(rest), settings);
}

std::string writeSettings(const PlugInSettings& settings, std::string_view timestamp) {
    std::string file = ";Korvel animtion plugin configuration file\r\n"
                       ";Edit this at your own risk\r\n";
    file.append(";Last updated ").append(timestamp).append("\r\n;\r\n[PlugIn]\r\n");
    for (const SettingRow& row : settingRows()) {
        file.append(row.key).append(" = ");
        if (row.isText())
            file.append(settings.text(row.storage));
        else
            file.append(std::to_string(settings.number(row.storage)));
        file.append("\r\n");
    }
    return file;
}

} // namespace veldran
