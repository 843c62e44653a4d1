#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace corvane::haldend {

/// One section of a configuration. Titles and keys as they are written at their first place; both fold case.
/// What it holds may be passwords and is wiped when it is destroyed.
struct IniSection {
    struct Option {
        std::string key, value;
    };
    IniSection() = default;
    explicit IniSection(std::string name) : title(std::move(name)) {}
    IniSection(const IniSection&) = default;
    IniSection(IniSection&&) = default;
    IniSection& operator=(const IniSection&) = default;
    IniSection& operator=(IniSection&&) = default;
    ~IniSection();

    std::string title; ///< without brackets and outer blanks
    std::vector<Option> options;
};

/// A configuration text parsed by libini_config, the library that SSSD itself reads its configuration with,
/// and with SSSD's own settings: no continued lines, the last of several values counts, sections of one title
/// are one. Time grows linearly with the text. Main thread.
class IniConfiguration {
public:
    /// Throws `IniDamage` when the library, and so SSSD, refuses the text.
    explicit IniConfiguration(std::string_view text);

    /// What `other` says is added, and counts where both say something.
    void merge(const IniConfiguration& other);
    /// In the order of the text.
    [[nodiscard]] const std::vector<IniSection>& sections() const& { return sections_; }
    [[nodiscard]] std::vector<IniSection> sections() && { return std::move(sections_); }

private:
    std::vector<IniSection> sections_;
};

/// Why a text was refused. `line` counts from 1; 0 when it is about the whole text.
struct IniDamage {
    std::size_t line = 0;
    std::string reason; ///< a sentence
};

} // namespace corvane::haldend
