#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

struct ini_cfgobj;

namespace corvane::haldend {

/// One section of a configuration. Titles and keys as they are written at their first place; both fold case.
struct IniSection {
    struct Option {
        std::string key, value;
    };
    std::string title; ///< without brackets and outer blanks
    std::vector<Option> options;
};

/// A configuration text parsed by libini_config, the library that SSSD itself reads its configuration with,
/// and with SSSD's own settings: no continued lines, the last of several values counts, sections of one title
/// are one. Main thread.
class IniConfiguration {
public:
    /// Throws `IniDamage` when the library, and so SSSD, refuses the text.
    explicit IniConfiguration(std::string_view text);
    IniConfiguration(const IniConfiguration&) = delete;
    IniConfiguration& operator=(const IniConfiguration&) = delete;
    ~IniConfiguration();

    /// What `other` says is added, and counts where both say something.
    void merge(const IniConfiguration& other);
    /// In the order of the text.
    [[nodiscard]] std::vector<IniSection> sections() const;

private:
    struct Destroy {
        void operator()(ini_cfgobj* object) const;
    };
    [[nodiscard]] IniSection sectionNamed(const char* title) const;

    std::unique_ptr<ini_cfgobj, Destroy> object_;
};

/// Why a text was refused. `line` counts from 1; 0 when it is about the whole text.
struct IniDamage {
    std::size_t line = 0;
    std::string reason; ///< a sentence
};

} // namespace corvane::haldend
