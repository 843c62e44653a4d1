#include "plist/XmlWriter.h"

#include <charconv>
#include <cmath>

#include "plist/FormatFailure.h"
#include "plist/Limits.h"
#include "plist/Text.h"

namespace corvane::plist {
namespace {

std::string escaped(std::string_view text) {
    if (!isXmlText(text)) throw FormatFailure("a text holds a character that XML can't");
    std::string result;
    result.reserve(text.size());
    for (const char c : text) {
        if (c == '&')
            result += "&amp;";
        else if (c == '<')
            result += "&lt;";
        else if (c == '>')
            result += "&gt;";
        else if (c == '\r')
            result += "&#13;"; // readers turn a bare one into a line feed
        else
            result += c;
    }
    return result;
}

std::string realText(double number) {
    if (std::isnan(number)) return "nan";
    if (std::isinf(number)) return number < 0 ? "-infinity" : "+infinity";
    char buffer[40];
    return {buffer, std::to_chars(buffer, buffer + sizeof buffer, number).ptr};
}

std::string_view viewOf(const util::Bytes& bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

std::string dateElementText(const util::Date& date) {
    const auto text = dateText(date.secondsSinceEpoch());
    if (!text) throw FormatFailure("a date lies outside the years 1 to 9999");
    return *text;
}

} // namespace

util::Bytes XmlWriter::write(const util::Value& value) {
    document_.clear();
    document_ += "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">\n";
    writeValue(value, 0);
    document_ += "</plist>\n";
    return util::bytesFromText(document_.text());
}

void XmlWriter::writeValue(const util::Value& value, std::size_t depth) {
    if (value.isNull()) throw FormatFailure("null has no property-list form");
    if (depth > maximumDepth) throw FormatFailure("containers are nested too deeply");
    depth_ = depth;
    switch (value.object()->kind()) {
    case util::Kind::String:
        return writeElement(depth, "string", escaped(value.as<util::String>().text()));
    case util::Kind::Number:
        return writeNumber(value.as<util::Number>());
    case util::Kind::Date:
        return writeElement(depth, "date", dateElementText(value.as<util::Date>()));
    case util::Kind::Data:
        return writeData(value.as<util::Data>(), depth);
    case util::Kind::Array:
        return writeArray(value.as<util::Array>(), depth);
    case util::Kind::Dictionary:
        return writeDictionary(value.as<util::Dictionary>(), depth);
    default:
        throw FormatFailure("a set or an opaque object has no property-list form");
    }
}

void XmlWriter::writeNumber(const util::Number& number) {
    if (number.isBoolean()) {
        indent(depth_);
        document_ += number.booleanValue() ? "<true/>\n" : "<false/>\n";
    } else if (number.isFloating()) {
        writeElement(depth_, "real", realText(number.doubleValue()));
    } else {
        writeElement(depth_, "integer",
                     number.isUnsigned() ? std::to_string(number.unsignedValue())
                                         : std::to_string(number.integerValue()));
    }
}

void XmlWriter::writeArray(const util::Array& array, std::size_t depth) {
    indent(depth);
    if (array.isEmpty()) {
        document_ += "<array/>\n";
        return;
    }
    document_ += "<array>\n";
    for (const auto& element : array.elements())
        writeValue(element, depth + 1);
    indent(depth);
    document_ += "</array>\n";
}

void XmlWriter::writeDictionary(const util::Dictionary& dictionary, std::size_t depth) {
    indent(depth);
    if (dictionary.isEmpty()) {
        document_ += "<dict/>\n";
        return;
    }
    document_ += "<dict>\n";
    for (const auto& [key, value] : dictionary.entries()) {
        writeElement(depth + 1, "key", escaped(key));
        writeValue(value, depth + 1);
    }
    indent(depth);
    document_ += "</dict>\n";
}

void XmlWriter::writeData(const util::Data& data, std::size_t depth) {
    auto text = base64(viewOf(data.bytes()));
    writeElement(depth, "data", text);
    util::wipe(text);
}

void XmlWriter::writeElement(std::size_t depth, std::string_view name, std::string_view text) {
    indent(depth);
    for (const auto part : {std::string_view("<"), name, std::string_view(">"), text, std::string_view("</"),
                            name, std::string_view(">\n")})
        document_ += part;
}

void XmlWriter::indent(std::size_t depth) { document_ += std::string(depth, '\t'); }

} // namespace corvane::plist
