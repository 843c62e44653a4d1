#include "util/Containers.h"

#include <algorithm>

namespace corvane::util {
namespace {

/// What the three container objects share: their storage and the count of changes.
template <typename Storage>
class ContainerObject : public Object {
public:
    ContainerObject(Storage storage, bool isMutable) : Object(isMutable), storage_(std::move(storage)) {}

    [[nodiscard]] const Storage& storage() const { return storage_; }
    [[nodiscard]] const std::uint64_t& changes() const { return changes_; }
    /// The storage for a change; counts it.
    [[nodiscard]] Storage& forChange() {
        requireMutable();
        ++changes_;
        return storage_;
    }
    /// Capacity isn't contents: nothing is counted.
    [[nodiscard]] Storage& forReserve() { return storage_; }

private:
    Storage storage_;
    std::uint64_t changes_ = 0;
};

std::string joined(const ValueList& elements) {
    std::string text;
    for (const auto& element : elements)
        text += (text.empty() ? "" : ", ") + element.description();
    return text;
}

class ArrayObject final : public ContainerObject<ValueList> {
public:
    using ContainerObject::ContainerObject;
    [[nodiscard]] Kind kind() const override { return Kind::Array; }
    [[nodiscard]] bool equals(const Object& other) const override {
        return storage() == static_cast<const ArrayObject&>(other).storage();
    }
    [[nodiscard]] std::string description() const override { return "(" + joined(storage()) + ")"; }
    [[nodiscard]] Value immutableCopy() const override { return Array(storage()); }
    [[nodiscard]] Value mutableCopy() const override { return Array::makeMutable(storage()); }
};

class DictionaryObject final : public ContainerObject<ValueMap> {
public:
    using ContainerObject::ContainerObject;
    [[nodiscard]] Kind kind() const override { return Kind::Dictionary; }
    [[nodiscard]] bool equals(const Object& other) const override {
        return storage() == static_cast<const DictionaryObject&>(other).storage();
    }
    [[nodiscard]] std::string description() const override {
        std::string text;
        for (const auto& [key, value] : storage())
            text += (text.empty() ? "" : ", ") + key + " = " + value.description();
        return "{" + text + "}";
    }
    [[nodiscard]] Value immutableCopy() const override { return Dictionary(storage()); }
    [[nodiscard]] Value mutableCopy() const override { return Dictionary::makeMutable(storage()); }
};

class SetObject final : public ContainerObject<ValueList> {
public:
    using ContainerObject::ContainerObject;
    [[nodiscard]] Kind kind() const override { return Kind::Set; }
    [[nodiscard]] bool equals(const Object& other) const override {
        const auto& theirs = static_cast<const SetObject&>(other).storage();
        return std::ranges::is_permutation(storage(), theirs);
    }
    [[nodiscard]] std::string description() const override { return "[" + joined(storage()) + "]"; }
    [[nodiscard]] Value immutableCopy() const override { return copy(false); }
    [[nodiscard]] Value mutableCopy() const override { return copy(true); }

private:
    [[nodiscard]] Value copy(bool isMutable) const {
        return Value(std::make_shared<SetObject>(storage(), isMutable));
    }
};

template <typename T>
std::shared_ptr<Object> make(auto storage, bool isMutable) {
    return std::make_shared<T>(std::move(storage), isMutable);
}

// A null handle reads as empty, so that callers needn't tell "absent" from "nothing in it".
template <typename T>
const auto& storageOf(const Value& handle) {
    static const T empty({}, false);
    return handle.isNull() ? empty.storage() : static_cast<const T&>(*handle.object()).storage();
}

template <typename T>
T& objectOf(const Value& handle) {
    if (handle.isNull()) throw ImmutableObjectException("attempt to change a container that is not there");
    return static_cast<T&>(*handle.object());
}

template <typename T, typename Range>
Range rangeOf(const Value& handle) {
    static const std::uint64_t never = 0;
    const auto& changes = handle.isNull() ? never : static_cast<const T&>(*handle.object()).changes();
    return Range(handle.object(), storageOf<T>(handle), changes);
}

void requirePosition(std::size_t index, std::size_t end) {
    if (index < end) return;
    throw RangeException("index " + std::to_string(index) + " is beyond the end of a list of " +
                         std::to_string(end));
}

auto positionInList(std::size_t index) { return static_cast<std::ptrdiff_t>(index); }

} // namespace

Array::Array(std::initializer_list<Value> elements) : Array(ValueList(elements)) {}
Array::Array(ValueList elements) : HandleOf(make<ArrayObject>(std::move(elements), false)) {}
Array Array::makeMutable(ValueList elements) { return Array(make<ArrayObject>(std::move(elements), true)); }
Array Array::ofTexts(const std::vector<std::string>& texts) {
    return Array(ValueList(texts.begin(), texts.end()));
}

std::size_t Array::count() const { return storageOf<ArrayObject>(*this).size(); }

Value Array::at(std::size_t index) const {
    requirePosition(index, count());
    return storageOf<ArrayObject>(*this)[index];
}

std::string Array::textAt(std::size_t index) const { return at(index).as<String>().text(); }
bool Array::contains(const Value& value) const { return indexOf(value).has_value(); }

std::optional<std::size_t> Array::indexOf(const Value& value) const {
    const auto& list = storageOf<ArrayObject>(*this);
    const auto found = std::ranges::find(list, value);
    if (found == list.end()) return std::nullopt;
    return static_cast<std::size_t>(found - list.begin());
}

ListRange Array::elements() const { return rangeOf<ArrayObject, ListRange>(*this); }

std::vector<std::string> Array::texts() const {
    std::vector<std::string> texts;
    texts.reserve(count());
    for (const auto& element : elements())
        texts.push_back(element.as<String>().text());
    return texts;
}

void Array::reserve(std::size_t capacity) { objectOf<ArrayObject>(*this).forReserve().reserve(capacity); }
void Array::append(const Value& value) { objectOf<ArrayObject>(*this).forChange().push_back(value); }

void Array::insert(const Value& value, std::size_t index) {
    requirePosition(index, count() + 1);
    auto& list = objectOf<ArrayObject>(*this).forChange();
    list.insert(list.begin() + positionInList(index), value);
}

void Array::replace(std::size_t index, const Value& value) {
    requirePosition(index, count());
    objectOf<ArrayObject>(*this).forChange()[index] = value;
}

void Array::removeAt(std::size_t index) {
    requirePosition(index, count());
    auto& list = objectOf<ArrayObject>(*this).forChange();
    list.erase(list.begin() + positionInList(index));
}

void Array::removeAllEqualTo(const Value& value) {
    std::erase(objectOf<ArrayObject>(*this).forChange(), value);
}
void Array::setElements(ValueList elements) {
    objectOf<ArrayObject>(*this).forChange() = std::move(elements);
}

Dictionary::Dictionary(std::initializer_list<ValueMap::value_type> entries) : Dictionary(ValueMap(entries)) {}
Dictionary::Dictionary(ValueMap entries) : HandleOf(make<DictionaryObject>(std::move(entries), false)) {}
Dictionary Dictionary::makeMutable(ValueMap entries) {
    return Dictionary(make<DictionaryObject>(std::move(entries), true));
}

std::size_t Dictionary::count() const { return storageOf<DictionaryObject>(*this).size(); }

Value Dictionary::valueForKey(std::string_view key) const {
    const auto& map = storageOf<DictionaryObject>(*this);
    const auto found = map.find(key);
    return found == map.end() ? Value() : found->second;
}

std::string Dictionary::textForKey(std::string_view key) const {
    return valueForKey(key).as<String>().text();
}
bool Dictionary::containsKey(std::string_view key) const {
    return storageOf<DictionaryObject>(*this).contains(key);
}

std::vector<std::string> Dictionary::keys() const {
    std::vector<std::string> keys;
    keys.reserve(count());
    for (const auto& [key, value] : storageOf<DictionaryObject>(*this))
        keys.push_back(key);
    return keys;
}

MapRange Dictionary::entries() const { return rangeOf<DictionaryObject, MapRange>(*this); }

void Dictionary::set(std::string_view key, const Value& value) {
    if (value.isNull()) return remove(key);
    objectOf<DictionaryObject>(*this).forChange().insert_or_assign(std::string(key), value);
}

void Dictionary::remove(std::string_view key) {
    auto& map = objectOf<DictionaryObject>(*this).forChange();
    if (const auto found = map.find(key); found != map.end()) map.erase(found);
}

Set::Set(std::initializer_list<Value> elements) : HandleOf(make<SetObject>(ValueList(), false)) {
    auto& list = static_cast<SetObject&>(*object()).forReserve();
    for (const auto& element : elements)
        if (std::ranges::find(list, element) == list.end()) list.push_back(element);
}
Set Set::makeMutable() { return Set(make<SetObject>(ValueList(), true)); }

std::size_t Set::count() const { return storageOf<SetObject>(*this).size(); }
bool Set::contains(const Value& value) const {
    const auto& list = storageOf<SetObject>(*this);
    return std::ranges::find(list, value) != list.end();
}
ListRange Set::elements() const { return rangeOf<SetObject, ListRange>(*this); }
void Set::reserve(std::size_t capacity) { objectOf<SetObject>(*this).forReserve().reserve(capacity); }
void Set::add(const Value& value) {
    auto& list = objectOf<SetObject>(*this).forChange();
    if (std::ranges::find(list, value) == list.end()) list.push_back(value);
}
void Set::remove(const Value& value) { std::erase(objectOf<SetObject>(*this).forChange(), value); }

} // namespace corvane::util
