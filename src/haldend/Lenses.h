#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace corvane::haldend {

/// The loaded grammars of the machine's configuration files. Loading takes tens of milliseconds; share one.
/// One thread at a time.
class Lenses {
public:
    /// Throws `Failure` when the grammars can't be loaded.
    Lenses();
    Lenses(const Lenses&) = delete;
    Lenses& operator=(const Lenses&) = delete;
    ~Lenses();

private:
    friend class LensText;
    struct Handle;
    std::unique_ptr<Handle> handle_;
};

/// One configuration text as a tree, edited in memory; no file is touched. What isn't edited keeps its octets.
/// Only one is alive per `Lenses` at a time. Paths are relative to the text, as in "database[1]/service".
class LensText {
public:
    /// `lens` as in "Nsswitch.lns"; `path` names the file in messages. Throws `Failure` with line and evidence
    /// when the text doesn't follow the grammar.
    LensText(Lenses& lenses, const std::string& lens, const std::string& text, const std::string& path);
    LensText(const LensText&) = delete;
    LensText& operator=(const LensText&) = delete;
    ~LensText();

    [[nodiscard]] std::vector<std::string> matches(const std::string& pattern) const;
    [[nodiscard]] std::optional<std::string> value(const std::string& node) const;
    /// These throw `Failure` when the tree can't be changed so.
    void set(const std::string& node, const std::string& value);
    void insertAfter(const std::string& node, const std::string& label);
    void remove(const std::string& node);
    /// The text with the changes. Throws `Failure` when the grammar can't express them.
    [[nodiscard]] std::string text() const;

private:
    [[nodiscard]] std::string full(const std::string& node) const;
    void requireParsed(const std::string& text, const std::string& path) const;
    void require(bool done) const;

    Lenses::Handle& handle_;
    std::string lens_;
    std::string path_;
    bool addedNewline_;
};

} // namespace corvane::haldend
