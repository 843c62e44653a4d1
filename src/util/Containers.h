#pragma once

#include <initializer_list>
#include <map>
#include <string>
#include <vector>

#include "util/Leaves.h"

namespace corvane::util {

/// Counts the changes of a container, so that a walk notices one made under its feet.
class MutationMark {
public:
    explicit MutationMark(const std::uint64_t& changes) : changes_(&changes), atStart_(changes) {}
    /// Throws `EnumerationMutationException` once the container has changed since this mark was taken.
    void check() const {
        if (*changes_ != atStart_)
            throw EnumerationMutationException("collection was changed while being walked");
    }

private:
    const std::uint64_t* changes_;
    std::uint64_t atStart_;
};

/// Walks a container by position. The container stays alive through the walk; a change of it during the
/// walk raises `EnumerationMutationException` at the next step.
template <typename Storage, typename Iterator>
class CheckedRange {
public:
    class iterator {
    public:
        iterator(Iterator position, const MutationMark& mark) : position_(position), mark_(&mark) {}
        /// A copy: the walker may hold on to it while it changes the container.
        auto operator*() const {
            mark_->check();
            return *position_;
        }
        iterator& operator++() {
            mark_->check();
            ++position_;
            return *this;
        }
        bool operator!=(const iterator& other) const {
            mark_->check();
            return position_ != other.position_;
        }

    private:
        Iterator position_;
        const MutationMark* mark_;
    };

    CheckedRange(std::shared_ptr<Object> owner, const Storage& storage, const std::uint64_t& changes)
        : owner_(std::move(owner)), storage_(&storage), mark_(changes) {}
    [[nodiscard]] iterator begin() const { return iterator(storage_->begin(), mark_); }
    [[nodiscard]] iterator end() const { return iterator(storage_->end(), mark_); }

private:
    std::shared_ptr<Object> owner_;
    const Storage* storage_;
    MutationMark mark_;
};

using ValueList = std::vector<Value>;
using ValueMap = std::map<std::string, Value, std::less<>>;
using ListRange = CheckedRange<ValueList, ValueList::const_iterator>;
using MapRange = CheckedRange<ValueMap, ValueMap::const_iterator>;

/// An ordered list. A null handle reads as empty. All changes throw `ImmutableObjectException` on the
/// immutable form; positions past the end throw `RangeException`.
class Array : public HandleOf<Kind::Array> {
public:
    using HandleOf::HandleOf;
    Array(std::initializer_list<Value> elements);
    explicit Array(ValueList elements);
    [[nodiscard]] static Array makeMutable(ValueList elements = {});
    [[nodiscard]] static Array ofTexts(const std::vector<std::string>& texts);

    [[nodiscard]] std::size_t count() const;
    [[nodiscard]] bool isEmpty() const { return count() == 0; }
    [[nodiscard]] Value at(std::size_t index) const;
    /// The text at `index`, "" when the element is no string.
    [[nodiscard]] std::string textAt(std::size_t index) const;
    [[nodiscard]] bool contains(const Value& value) const;
    /// Position of the first equal element, none when there is none.
    [[nodiscard]] std::optional<std::size_t> indexOf(const Value& value) const;
    [[nodiscard]] ListRange elements() const;
    [[nodiscard]] std::vector<std::string> texts() const;

    void reserve(std::size_t capacity);
    void append(const Value& value);
    /// `index` may be the count.
    void insert(const Value& value, std::size_t index);
    void replace(std::size_t index, const Value& value);
    void removeAt(std::size_t index);
    /// Removes every equal element; absent is harmless.
    void removeAllEqualTo(const Value& value);
    void setElements(ValueList elements);
};

/// Text keys to values, walked in the order of the keys' bytes. A null handle reads as empty.
class Dictionary : public HandleOf<Kind::Dictionary> {
public:
    using HandleOf::HandleOf;
    Dictionary(std::initializer_list<ValueMap::value_type> entries);
    explicit Dictionary(ValueMap entries);
    [[nodiscard]] static Dictionary makeMutable(ValueMap entries = {});

    [[nodiscard]] std::size_t count() const;
    [[nodiscard]] bool isEmpty() const { return count() == 0; }
    /// The stored value itself, null when the key is absent.
    [[nodiscard]] Value valueForKey(std::string_view key) const;
    /// The stored text, "" when absent or no string.
    [[nodiscard]] std::string textForKey(std::string_view key) const;
    [[nodiscard]] bool containsKey(std::string_view key) const;
    [[nodiscard]] std::vector<std::string> keys() const;
    [[nodiscard]] MapRange entries() const;

    /// A null value removes the key.
    void set(std::string_view key, const Value& value);
    /// Absent is harmless.
    void remove(std::string_view key);
};

/// Unique values in the order they were added. Meant for small collections: look-up is linear.
class Set : public HandleOf<Kind::Set> {
public:
    using HandleOf::HandleOf;
    Set(std::initializer_list<Value> elements);
    [[nodiscard]] static Set makeMutable();

    [[nodiscard]] std::size_t count() const;
    [[nodiscard]] bool contains(const Value& value) const;
    [[nodiscard]] ListRange elements() const;

    void reserve(std::size_t capacity);
    /// An equal element already present stays; the new one is dropped.
    void add(const Value& value);
    void remove(const Value& value);
};

} // namespace corvane::util
