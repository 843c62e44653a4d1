#include "haldend/files/IniConfiguration.h"

extern "C" { // its headers are for C alone
#include <ini_configobj.h>
}

#include <charconv>
#include <new>

#include "util/Bytes.h"

namespace corvane::haldend {
namespace {

struct CloseFile {
    void operator()(ini_cfgfile* file) const { ini_config_file_destroy(file); }
};

/// The number in the library's "Error (5) on line 3: Equal sign is missing.", and what follows it.
IniDamage damageFrom(std::string_view message) {
    constexpr std::string_view before = " on line ";
    const auto at = message.find(before);
    if (at == std::string_view::npos) return {0, std::string(message)};
    message.remove_prefix(at + before.size());
    IniDamage damage;
    const auto number = std::from_chars(message.data(), message.data() + message.size(), damage.line);
    message.remove_prefix(static_cast<std::size_t>(number.ptr - message.data()));
    damage.reason = message.starts_with(": ") ? message.substr(2) : message;
    return damage;
}

IniDamage firstDamage(ini_cfgobj* object) {
    char** messages = nullptr;
    if (ini_config_error_count(object) == 0 || ini_config_get_errors(object, &messages) != 0 || !messages[0])
        return {0, "It isn't text that the configuration library can read."};
    auto damage = damageFrom(messages[0]);
    ini_config_free_errors(messages);
    return damage;
}

/// Line of the first byte that isn't UTF-8; 0 when all is.
std::size_t lineOfForeignByte(std::string_view text) {
    std::size_t line = 1, following = 0;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (following > 0) {
            if ((byte & 0xC0U) != 0x80U) return line;
            --following;
        } else if (byte >= 0x80U) {
            following = byte >= 0xF0U && byte < 0xF8U ? 3 : byte >= 0xE0U ? 2 : 1;
            if (byte < 0xC2U || byte >= 0xF8U) return line;
        }
        if (byte == '\n') ++line;
    }
    return following > 0 ? line : 0;
}

/// Comments are most of a commented file and mean nothing; emptied, they keep the numbers of the lines. Left
/// alone where one line may begin a comment of several.
std::string withoutComments(std::string_view text) {
    if (text.find("/*") != std::string_view::npos) return std::string(text);
    std::string result;
    result.reserve(text.size());
    while (!text.empty()) {
        const auto end = std::min(text.find('\n'), text.size() - 1);
        if (text.front() == '#' || text.front() == ';')
            result += '\n';
        else
            result += text.substr(0, end + 1);
        text.remove_prefix(end + 1);
    }
    return result;
}

/// A copy that the library may change, wiped in the end: it may hold passwords.
struct Buffer {
    explicit Buffer(std::string_view whole) : text(withoutComments(whole)) {}
    Buffer(const Buffer&) = delete;
    Buffer& operator=(const Buffer&) = delete;
    ~Buffer() { util::wipe(text); }
    std::string text;
};

} // namespace

void IniConfiguration::Destroy::operator()(ini_cfgobj* object) const { ini_config_destroy(object); }

IniConfiguration::IniConfiguration(std::string_view text) {
    if (const auto line = lineOfForeignByte(text)) throw IniDamage{line, "It isn't valid UTF-8."};
    ini_cfgobj* object = nullptr;
    if (ini_config_create(&object) != 0) throw std::bad_alloc();
    object_.reset(object);
    if (text.empty()) return;
    ini_cfgfile* opened = nullptr;
    Buffer buffer(text);
    if (ini_config_file_from_mem(buffer.text.data(), static_cast<std::uint32_t>(buffer.text.size()),
                                 &opened) != 0)
        throw IniDamage{0, "It isn't text that the configuration library can read."};
    const std::unique_ptr<ini_cfgfile, CloseFile> file(opened);
    if (ini_config_parse(file.get(), INI_STOP_ON_ANY, INI_MV1S_OVERWRITE, INI_PARSE_NOWRAP, object_.get()) !=
        0)
        throw firstDamage(object_.get());
}

IniConfiguration::~IniConfiguration() = default;

void IniConfiguration::merge(const IniConfiguration& other) {
    ini_cfgobj* merged = nullptr;
    if (ini_config_merge(object_.get(), other.object_.get(), INI_MV2S_OVERWRITE, &merged) == 0)
        object_.reset(merged);
}

IniSection IniConfiguration::sectionNamed(const char* title) const {
    IniSection section{title, {}};
    int count = 0, status = 0;
    char** keys = ini_get_attribute_list(object_.get(), title, &count, &status);
    for (int i = 0; keys && i < count; ++i) {
        value_obj* value = nullptr;
        const char* text = nullptr;
        if (ini_get_config_valueobj(title, keys[i], object_.get(), INI_GET_FIRST_VALUE, &value) == 0 &&
            value && value_get_concatenated(value, &text) == 0 && text)
            section.options.push_back({keys[i], text});
    }
    ini_free_attribute_list(keys);
    return section;
}

std::vector<IniSection> IniConfiguration::sections() const {
    std::vector<IniSection> sections;
    int count = 0, status = 0;
    char** titles = ini_get_section_list(object_.get(), &count, &status);
    for (int i = 0; titles && i < count; ++i)
        sections.push_back(sectionNamed(titles[i]));
    ini_free_section_list(titles);
    return sections;
}

} // namespace corvane::haldend
