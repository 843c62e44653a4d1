#include "plist/XmlReader.h"

#include <expat.h>

#include <algorithm>
#include <charconv>
#include <limits>
#include <vector>

#include "plist/FormatFailure.h"
#include "plist/Limits.h"
#include "plist/SecretMemory.h"
#include "plist/Text.h"
#include "util/Containers.h"

namespace corvane::plist {
namespace {

std::string_view trimmed(std::string_view text) {
    const auto first = text.find_first_not_of(" \t\r\n");
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(" \t\r\n") - first + 1);
}

template <typename T>
std::optional<T> wholeNumber(std::string_view text) {
    T value{};
    const auto [end, status] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (text.empty() || status != std::errc() || end != text.data() + text.size()) return std::nullopt;
    return value;
}

util::Value integerFrom(std::string_view text) {
    if (text.starts_with('+')) text.remove_prefix(1);
    if (const auto number = wholeNumber<std::int64_t>(text)) return *number;
    if (const auto number = wholeNumber<std::uint64_t>(text)) return *number;
    throw FormatFailure("\"" + std::string(text.substr(0, 40)) + "\" isn't an integer of 64 bits");
}

util::Value realFrom(std::string_view text) {
    if (text.starts_with('+')) text.remove_prefix(1);
    if (const auto number = wholeNumber<double>(text)) return *number; // also nan, inf, infinity
    throw FormatFailure("\"" + std::string(text.substr(0, 40)) + "\" isn't a number");
}

util::Value dateFrom(std::string_view text) {
    if (const auto seconds = secondsFromDateText(text)) return util::Date(*seconds);
    throw FormatFailure("\"" + std::string(text.substr(0, 40)) + "\" isn't a date like 2026-01-31T23:59:59Z");
}

util::Value dataFrom(std::string_view text) {
    if (auto bytes = bytesFromBase64(text)) {
        util::Data data(util::bytesFromText(*bytes));
        util::wipe(*bytes);
        return data;
    }
    throw FormatFailure("a data element is not in base 64");
}

util::Value leafFrom(const std::string& name, const std::string& text) {
    if (name == "string") return util::String(text);
    if (name == "integer") return integerFrom(trimmed(text));
    if (name == "real") return realFrom(trimmed(text));
    if (name == "date") return dateFrom(trimmed(text));
    if (name == "data") return dataFrom(text);
    return name == "true";
}

bool isLeaf(std::string_view name) {
    static constexpr std::string_view leaves[] = {"string", "integer", "real", "date",
                                                  "data",   "true",    "false"};
    return std::ranges::find(leaves, name) != std::end(leaves);
}

} // namespace

/// Turns the parser's events into values. A failure inside an event is kept and the parser stopped, because
/// no exception may cross the C library.
class XmlReader::Builder {
public:
    Builder() : parser_(XML_ParserCreate_MM(nullptr, &WipingAllocator::suite(), nullptr)) {
        if (!parser_) throw std::bad_alloc();
        XML_SetUserData(parser_, this);
        XML_SetElementHandler(parser_, onStart, onEnd);
        XML_SetCharacterDataHandler(parser_, onText);
        XML_SetEntityDeclHandler(parser_, onEntity);
        XML_SetSkippedEntityHandler(parser_, onSkippedEntity);
    }
    Builder(const Builder&) = delete;
    Builder& operator=(const Builder&) = delete;
    ~Builder() { XML_ParserFree(parser_); }

    util::Value read(util::BytesView document) {
        const auto status = XML_Parse(parser_, reinterpret_cast<const char*>(document.data()),
                                      static_cast<int>(document.size()), XML_TRUE);
        if (!failure_.empty()) fail(failure_);
        if (status != XML_STATUS_OK) fail(XML_ErrorString(XML_GetErrorCode(parser_)));
        if (result_.isNull()) fail("the plist element is empty");
        return result_;
    }

private:
    struct Container {
        bool isDictionary = false;
        util::ValueList list;
        util::ValueMap map;
        std::optional<std::string> key;
    };

    [[noreturn]] void fail(const std::string& why) {
        throw FormatFailure("line " + std::to_string(XML_GetCurrentLineNumber(parser_)) + ", column " +
                            std::to_string(XML_GetCurrentColumnNumber(parser_) + 1) + ": " + why);
    }

    template <typename Action>
    void guarded(const Action& action) noexcept {
        if (!failure_.empty()) return;
        try {
            action();
        } catch (const std::exception& exception) {
            failure_ = exception.what();
            XML_StopParser(parser_, XML_FALSE);
        }
    }
    static Builder& self(void* data) { return *static_cast<Builder*>(data); }

    static void XMLCALL onStart(void* data, const XML_Char* name, const XML_Char**) {
        self(data).guarded([&] { self(data).start(name); });
    }
    static void XMLCALL onEnd(void* data, const XML_Char* name) {
        self(data).guarded([&] { self(data).end(name); });
    }
    static void XMLCALL onText(void* data, const XML_Char* text, int length) {
        self(data).guarded([&] { self(data).text({text, static_cast<std::size_t>(length)}); });
    }
    static void XMLCALL onEntity(void* data, const XML_Char*, int, const XML_Char*, int, const XML_Char*,
                                 const XML_Char*, const XML_Char*, const XML_Char*) {
        self(data).guarded([] { throw FormatFailure("entity declarations are not allowed"); });
    }
    static void XMLCALL onSkippedEntity(void* data, const XML_Char* name, int) {
        self(data).guarded(
            [&] { throw FormatFailure("the entity \"" + std::string(name) + "\" is not known"); });
    }

    void start(const std::string& name) {
        if (!inPlist_) return startDocument(name);
        if (!leaf_.empty()) throw FormatFailure("<" + name + "> inside <" + leaf_ + ">");
        if (++objects_ > maximumObjects) throw FormatFailure("more than a million elements");
        if (name == "key") return startKey();
        requirePlaceForValue(name);
        if (name == "dict" || name == "array") return startContainer(name == "dict");
        if (!isLeaf(name)) throw FormatFailure("<" + name + "> isn't an element of a property list");
        leaf_ = name;
        text_.clear();
    }

    void startDocument(const std::string& name) {
        if (name != "plist") throw FormatFailure("the document is a <" + name + ">, not a <plist>");
        inPlist_ = true;
    }

    void startKey() {
        if (stack_.empty() || !stack_.back().isDictionary) throw FormatFailure("<key> outside a dict");
        if (stack_.back().key) throw FormatFailure("the key \"" + *stack_.back().key + "\" has no value");
        leaf_ = "key";
        text_.clear();
    }

    void startContainer(bool isDictionary) {
        if (stack_.size() >= maximumDepth) throw FormatFailure("containers are nested more than 64 deep");
        stack_.emplace_back().isDictionary = isDictionary;
    }

    void requirePlaceForValue(const std::string& name) const {
        if (stack_.empty() && !result_.isNull()) throw FormatFailure("a second value after the first");
        if (!stack_.empty() && stack_.back().isDictionary && !stack_.back().key)
            throw FormatFailure("<" + name + "> without a key in a dict");
    }

    void end(const std::string& name) {
        if (name == "plist") return;
        if (name == "key") return endKey();
        if (name == "dict" || name == "array") return endContainer();
        leaf_.clear();
        take(leafFrom(name, text_.text()));
    }

    void endKey() {
        leaf_.clear();
        if (stack_.back().map.contains(text_.text()))
            throw FormatFailure("the key \"" + text_.text() + "\" appears twice");
        stack_.back().key = text_.text();
    }

    void endContainer() {
        auto container = std::move(stack_.back());
        stack_.pop_back();
        if (container.key) throw FormatFailure("the key \"" + *container.key + "\" has no value");
        if (container.isDictionary)
            take(util::Dictionary(std::move(container.map)));
        else
            take(util::Array(std::move(container.list)));
    }

    void take(const util::Value& value) {
        if (stack_.empty()) {
            result_ = value;
        } else if (auto& top = stack_.back(); top.isDictionary) {
            top.map.emplace(std::move(*top.key), value);
            top.key.reset();
        } else {
            top.list.push_back(value);
        }
    }

    void text(std::string_view part) {
        if (!leaf_.empty())
            text_ += part;
        else if (!trimmed(part).empty())
            throw FormatFailure("text between the elements");
    }

    XML_Parser parser_;
    bool inPlist_ = false;
    std::vector<Container> stack_;
    std::string leaf_; ///< the leaf element that is open, "" for none
    SecretText text_;
    std::size_t objects_ = 0;
    util::Value result_;
    std::string failure_;
};

XmlReader::XmlReader() : builder_(std::make_unique<Builder>()) {}
XmlReader::~XmlReader() = default;
util::Value XmlReader::read(util::BytesView document) { return builder_->read(document); }

} // namespace corvane::plist
