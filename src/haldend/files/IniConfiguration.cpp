#include "haldend/files/IniConfiguration.h"

extern "C" { // its headers are for C alone
#include <ini_configobj.h>
}

#include <algorithm>
#include <charconv>
#include <memory>
#include <new>
#include <optional>
#include <unordered_map>

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

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
constexpr std::string_view blanks = " \t\r\v\f\n";

/// The library overlooks an end of a comment that begins its line.
bool endsComment(std::string_view line) {
    const auto text = line.substr(0, line.find_last_not_of(blanks) + 1);
    return text.size() > 2 && text.ends_with("*/");
}

/// The first line with its line end.
std::string_view firstLine(std::string_view text) {
    const auto end = text.find('\n');
    return end == std::string_view::npos ? text : text.substr(0, end + 1);
}

/// Length of the comment or blank line that the text begins with, 0 for none; of one without an end, none.
std::optional<std::size_t> lengthOfComment(std::string_view text) {
    const auto first = firstLine(text);
    const bool isBlank = first.find_first_not_of(blanks) == std::string_view::npos;
    if (isBlank || first.starts_with('#') || first.starts_with(';') || first.starts_with("//"))
        return first.size();
    if (!first.starts_with("/*")) return 0;
    for (std::size_t length = 0; length < text.size();) {
        const auto line = firstLine(text.substr(length));
        length += line.size();
        if (endsComment(length == line.size() ? line.substr(1) : line)) return length; // "/*/" has none
    }
    return std::nullopt;
}

/// Comments are most of a commented file and mean nothing; emptied, they keep the numbers of the lines.
std::string withoutComments(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    if (text.starts_with(byteOrderMark)) {
        result = byteOrderMark;
        text.remove_prefix(byteOrderMark.size());
    }
    while (!text.empty()) {
        const auto comment = lengthOfComment(text);
        if (!comment) return result += text; // the library says what is wrong there
        const auto length = *comment > 0 ? *comment : firstLine(text).size();
        if (*comment > 0)
            result.append(static_cast<std::size_t>(std::ranges::count(text.substr(0, length), '\n')), '\n');
        else
            result += text.substr(0, length);
        text.remove_prefix(length);
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

struct DestroyObject {
    void operator()(ini_cfgobj* object) const { ini_config_destroy(object); }
};
using Object = std::unique_ptr<ini_cfgobj, DestroyObject>;

Object parsed(std::string_view text, std::uint32_t ofSeveralValues) {
    ini_cfgobj* made = nullptr;
    if (ini_config_create(&made) != 0) throw std::bad_alloc();
    Object object(made);
    ini_cfgfile* opened = nullptr;
    Buffer buffer(text);
    if (ini_config_file_from_mem(buffer.text.data(), static_cast<std::uint32_t>(buffer.text.size()),
                                 &opened) != 0)
        throw IniDamage{0, "It isn't text that the configuration library can read."};
    const std::unique_ptr<ini_cfgfile, CloseFile> file(opened);
    if (ini_config_parse(file.get(), INI_STOP_ON_ANY, ofSeveralValues, INI_PARSE_NOWRAP, object.get()) != 0)
        throw firstDamage(object.get());
    return object;
}

struct Names {
    explicit Names(char** list, int number, void (*release)(char**))
        : first(list), count(list ? number : 0), free(release) {}
    Names(const Names&) = delete;
    Names& operator=(const Names&) = delete;
    ~Names() { free(first); }
    char** first;
    int count;
    void (*free)(char**);
};

/// What the library writes for a whole configuration: a title, then its options, each on one line. It has no
/// call for all values of a section, and one by name takes the time of a whole section.
class Written {
public:
    explicit Written(ini_cfgobj* object) {
        if (simplebuffer_alloc(&buffer_) != 0) throw std::bad_alloc();
        if (ini_config_serialize(object, buffer_) != 0) throw std::bad_alloc();
        rest_ = {static_cast<const char*>(simplebuffer_get_vbuf(buffer_)), simplebuffer_get_len(buffer_)};
    }
    Written(const Written&) = delete;
    Written& operator=(const Written&) = delete;
    ~Written() {
        util::wipe(simplebuffer_get_vbuf(buffer_), simplebuffer_get_len(buffer_)); // it may hold passwords
        simplebuffer_free(buffer_);
    }

    /// Options before the first title have none, and the library leaves the first of them out of its lists.
    void passTitle() { pass(); }
    /// The value on the next line, which is about that option; none when the library has written it
    /// otherwise, as it does with an option called "[".
    std::optional<std::string_view> value(const std::string& key) {
        const auto line = nextLine();
        if (!line.starts_with(key + " = ")) return std::nullopt;
        pass();
        return line.substr(key.size() + 3);
    }

private:
    /// Without its line end; the lines of comments are empty by now.
    std::string_view nextLine() {
        while (rest_.starts_with('\n'))
            rest_.remove_prefix(1);
        return rest_.substr(0, rest_.find('\n'));
    }
    void pass() { rest_.remove_prefix(nextLine().size()); }

    simplebuffer* buffer_ = nullptr;
    std::string_view rest_;
};

std::string folded(std::string_view text) {
    std::string result(text);
    for (auto& c : result)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return result;
}

/// Options in the places of their first values, with their last ones.
class Options {
public:
    explicit Options(IniSection& section) : section_(section) {
        for (std::size_t i = 0; i < section.options.size(); ++i)
            places_.emplace(folded(section.options[i].key), i);
    }
    /// False when the option had a value before.
    bool set(std::string_view key, std::string_view value) {
        const auto [place, isNew] = places_.try_emplace(folded(key), section_.options.size());
        if (isNew) section_.options.push_back({std::string(key), {}});
        auto& known = section_.options[place->second].value;
        util::wipe(known);
        known = value;
        return isNew;
    }

private:
    IniSection& section_;
    std::unordered_map<std::string, std::size_t> places_;
};

/// None where the library has no such option.
std::optional<std::string_view> valueNamed(ini_cfgobj* object, const char* title, const char* key) {
    value_obj* value = nullptr;
    const char* text = nullptr;
    if (ini_get_config_valueobj(title, key, object, INI_GET_FIRST_VALUE, &value) != 0 || !value ||
        value_get_concatenated(value, &text) != 0 || !text)
        return std::nullopt;
    return text;
}

enum class Way { asWritten, byName };

struct Reading {
    std::vector<IniSection> sections;
    bool hasSeveralValues = false; ///< an option has
    bool isWhole = true;
};

void readSection(ini_cfgobj* object, const char* title, Written* written, Reading& reading) {
    auto& section = reading.sections.emplace_back(title);
    Options options(section);
    if (written) written->passTitle();
    int count = 0;
    char** list = ini_get_attribute_list(object, title, &count, nullptr);
    const Names keys(list, count, ini_free_attribute_list);
    section.options.reserve(static_cast<std::size_t>(keys.count));
    for (int i = 0; i < keys.count; ++i) {
        const auto value = written ? written->value(keys.first[i]) : valueNamed(object, title, keys.first[i]);
        if (!value)
            reading.isWhole = false;
        else if (!options.set(keys.first[i], *value))
            reading.hasSeveralValues = true;
    }
}

Reading readingOf(ini_cfgobj* object, Way way) {
    Reading reading;
    std::optional<Written> written;
    if (way == Way::asWritten) written.emplace(object);
    int count = 0;
    char** list = ini_get_section_list(object, &count, nullptr);
    const Names titles(list, count, ini_free_section_list);
    for (int i = 0; i < titles.count; ++i)
        readSection(object, titles.first[i], written ? &*written : nullptr, reading);
    return reading;
}

/// True unless every title is there once.
bool mayRepeatTitles(std::string_view text, const std::vector<IniSection>& sections) {
    const Buffer buffer(text);
    const auto& plain = buffer.text;
    std::size_t titles = 0;
    for (auto at = plain.find('['); at != std::string::npos; at = plain.find('[', at + 1))
        if (at == 0 || plain[at - 1] == '\n' ||
            (at == byteOrderMark.size() && plain.starts_with(byteOrderMark)))
            ++titles;
    const auto named = std::ranges::count_if(
        sections, [](const auto& section) { return folded(section.title) != "default"; });
    return titles != static_cast<std::size_t>(named);
}

/// To look for an earlier value of each option, and for a value by its name, takes the library the square of
/// their number: that is done only where it is needed. Of several values of one section the last is read
/// last, but not when more of the section follows in another place.
std::vector<IniSection> sectionsIn(std::string_view text) {
    auto reading = readingOf(parsed(text, INI_MV1S_ALLOW).get(), Way::asWritten);
    if (reading.hasSeveralValues && mayRepeatTitles(text, reading.sections))
        reading = readingOf(parsed(text, INI_MV1S_OVERWRITE).get(), Way::asWritten);
    if (!reading.isWhole) reading = readingOf(parsed(text, INI_MV1S_OVERWRITE).get(), Way::byName);
    return std::move(reading.sections);
}

} // namespace

IniSection::~IniSection() {
    for (auto& option : options)
        util::wipe(option.value);
}

IniConfiguration::IniConfiguration(std::string_view text) {
    if (const auto line = lineOfForeignByte(text)) throw IniDamage{line, "It isn't valid UTF-8."};
    if (text.empty()) return;
    sections_ = sectionsIn(text);
}

void IniConfiguration::merge(const IniConfiguration& other) {
    for (const auto& added : other.sections_) {
        const auto known = std::ranges::find_if(
            sections_, [&](const auto& section) { return folded(section.title) == folded(added.title); });
        if (known == sections_.end()) {
            sections_.push_back(added);
            continue;
        }
        Options options(*known);
        for (const auto& option : added.options)
            options.set(option.key, option.value);
    }
}

} // namespace corvane::haldend
