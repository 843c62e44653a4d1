#include "haldend/Lenses.h"

#include <augeas.h>

#include <algorithm>
#include <cctype>
#include <cstdlib>

#include "haldend/Failure.h"

namespace corvane::haldend {

struct Lenses::Handle {
    augeas* tree = nullptr;
};

namespace {

constexpr const char* input = "/input";
constexpr const char* output = "/output";
const std::string parsed = "/parsed";

std::string lineOf(const std::string& text, long number) {
    std::size_t start = 0;
    for (long i = 1; i < number; ++i) {
        const auto end = text.find('\n', start);
        if (end == std::string::npos) return {};
        start = end + 1;
    }
    return text.substr(start, text.find('\n', start) - start);
}

/// A line for a message: without the value where it may be a password, and no longer than a line of a window.
std::string evidence(std::string line) {
    std::string lower = line;
    std::ranges::transform(lower, lower.begin(), [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    const auto equals = line.find('=');
    for (const auto* word : {"authtok", "pass", "secret", "pwd"})
        if (equals != std::string::npos && lower.find(word) != std::string::npos) return line.substr(0, equals) + "=…";
    if (line.size() > 80) line = line.substr(0, 80) + "…";
    return line;
}

} // namespace

Lenses::Lenses() : handle_(std::make_unique<Handle>()) {
    handle_->tree = aug_init(nullptr, nullptr, AUG_NO_LOAD | AUG_NO_MODL_AUTOLOAD | AUG_NO_ERR_CLOSE);
    if (handle_->tree && aug_error(handle_->tree) == AUG_NOERROR) return;
    const std::string why = handle_->tree ? aug_error_message(handle_->tree) : "not enough memory";
    aug_close(handle_->tree);
    throw Failure(halden::ErrorCode::storage, "The machine's configuration files can't be edited.",
                  "The grammars of the Augeas library could not be loaded: " + why + ".",
                  "Install the package augeas-lenses.");
}

Lenses::~Lenses() { aug_close(handle_->tree); }

LensText::LensText(Lenses& lenses, const std::string& lens, const std::string& text, const std::string& path)
    : handle_(*lenses.handle_), lens_(lens), path_(path), addedNewline_(!text.empty() && !text.ends_with('\n')) {
    const auto whole = addedNewline_ ? text + "\n" : text;
    if (whole.find('\0') != std::string::npos)
        throw Failure(halden::ErrorCode::storage, path + " is damaged.", "It holds a NUL octet, so it is no text.",
                      "Repair the file, or put an earlier version back; then try again.");
    aug_set(handle_.tree, input, whole.c_str());
    aug_text_store(handle_.tree, lens.c_str(), input, parsed.c_str());
    try {
        requireParsed(whole, path);
    } catch (...) {
        aug_rm(handle_.tree, parsed.c_str());
        aug_rm(handle_.tree, input);
        throw;
    }
}

LensText::~LensText() {
    aug_rm(handle_.tree, parsed.c_str());
    aug_rm(handle_.tree, input);
    aug_rm(handle_.tree, output);
    aug_rm(handle_.tree, "/augeas/text");
}

void LensText::requireParsed(const std::string& text, const std::string& path) const {
    const std::string error = "/augeas/text" + parsed + "/error";
    const char* kind = nullptr;
    if (aug_get(handle_.tree, error.c_str(), &kind) != 1) return;
    const auto detail = [&](const char* name) {
        const char* value = nullptr;
        aug_get(handle_.tree, (error + "/" + name).c_str(), &value);
        return std::string(value ? value : "");
    };
    const auto line = detail("line");
    const auto message = detail("message");
    const auto shown = evidence(lineOf(text, std::strtol(line.c_str(), nullptr, 10)));
    aug_rm(handle_.tree, "/augeas/text");
    throw Failure(halden::ErrorCode::storage, path + " is damaged and is left as it is.",
                  line.empty() ? message + "." : "Line " + line + " can't be understood: \"" + shown + "\" (" + message + ").",
                  "Repair the line, or put an earlier version of the file back; then try again.");
}

std::string LensText::full(const std::string& node) const { return parsed + "/" + node; }

std::vector<std::string> LensText::matches(const std::string& pattern) const {
    char** found = nullptr;
    const int count = aug_match(handle_.tree, full(pattern).c_str(), &found);
    std::vector<std::string> nodes;
    for (int i = 0; i < count; ++i) {
        nodes.emplace_back(std::string_view(found[i]).substr(parsed.size() + 1));
        std::free(found[i]);
    }
    std::free(found);
    return nodes;
}

std::optional<std::string> LensText::value(const std::string& node) const {
    const char* text = nullptr;
    if (aug_get(handle_.tree, full(node).c_str(), &text) != 1 || !text) return std::nullopt;
    return std::string(text);
}

void LensText::set(const std::string& node, const std::string& value) {
    require(aug_set(handle_.tree, full(node).c_str(), value.c_str()) == 0);
}

void LensText::insertAfter(const std::string& node, const std::string& label) {
    require(aug_insert(handle_.tree, full(node).c_str(), label.c_str(), 0) == 0);
}

void LensText::remove(const std::string& node) { require(aug_rm(handle_.tree, full(node).c_str()) > 0); }

std::string LensText::text() const {
    aug_rm(handle_.tree, output);
    require(aug_text_retrieve(handle_.tree, lens_.c_str(), input, parsed.c_str(), output) == 0);
    const char* result = nullptr;
    require(aug_get(handle_.tree, output, &result) == 1 && result);
    std::string text = result;
    if (addedNewline_ && text.ends_with('\n')) text.pop_back();
    return text;
}

void LensText::require(bool done) const {
    if (done) return;
    const auto* details = aug_error_details(handle_.tree);
    throw Failure(halden::ErrorCode::storage, path_ + " can't be changed as wanted and is left as it is.",
                  std::string(aug_error_message(handle_.tree)) + (details ? std::string(": ") + details : "") + ".",
                  "Look at the file for unusual lines and simplify them; then try again.");
}

} // namespace corvane::haldend
