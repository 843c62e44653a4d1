#pragma once

#include <memory>
#include <string>

#include "haldend/Lenses.h"

namespace corvane::haldend {

/// The text of /etc/nsswitch.conf: where the C library looks users and groups up. A value; the file itself is
/// never touched. Throws `Failure` when the text doesn't follow the grammar.
class NsswitchFile {
public:
    NsswitchFile(std::shared_ptr<Lenses> lenses, std::string text, std::string path);

    [[nodiscard]] const std::string& text() const { return text_; }
    /// True when users or groups are looked up in SSSD.
    [[nodiscard]] bool usesSssd() const { return usesSssd_; }
    /// The text with `sss` in, or out of, the databases passwd, group, shadow and netgroup; those that are
    /// missing stay missing. A database that already has `sss` keeps it where it stands; otherwise it comes
    /// right after `files`, or last where there is no `files`. Everything else keeps its octets. Throws
    /// `Failure` when `sss` is wanted and there is neither a passwd nor a group line.
    [[nodiscard]] std::string textUsingSssd(bool wanted) const;

private:
    std::shared_ptr<Lenses> lenses_;
    std::string text_;
    std::string path_;
    bool usesSssd_ = false;
};

} // namespace corvane::haldend
