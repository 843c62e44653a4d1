#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "haldend/files/NsswitchLine.h"

namespace corvane::haldend {

/// How one line of nsswitch.conf reads with and without `sss`, each with its line end; "" where the line
/// isn't there. Remembered, so that switching back and forth restores the bytes.
struct NsswitchLinePair {
    std::string database;
    std::string without;
    std::string with;
    friend bool operator==(const NsswitchLinePair&, const NsswitchLinePair&) = default;
};
using NsswitchMemory = std::vector<NsswitchLinePair>;

/// The text of /etc/nsswitch.conf: where the C library looks users and groups up. Read as the C library reads
/// it: of several lines about one database the last counts, a last line without a line end doesn't, and one
/// reaction that it doesn't know makes it ignore the whole file. A value; the file itself is never touched.
class NsswitchFile {
public:
    /// Throws `Failure`, with line and reason, when the C library would ignore the file.
    NsswitchFile(std::string text, std::string path);

    [[nodiscard]] const std::string& text() const { return text_; }
    /// The line about a database as the C library reads it; none where it uses its defaults.
    [[nodiscard]] std::optional<NsswitchLine> line(std::string_view database) const;
    /// True when users that the machine's own files don't know are looked up in SSSD.
    [[nodiscard]] bool usesSssd() const;
    /// True when the file says that the tool authselect has made it.
    [[nodiscard]] bool isGenerated() const;
    /// The text with `sss` in, or out of, passwd, group, shadow, netgroup and, where it is there, initgroups.
    /// The others that are missing stay missing, but of passwd and group the one that is missing is added
    /// with the other. A line that reads as `memory` has it for the present state becomes what `memory` has
    /// for the wanted one; what is changed is noted there. Everything else keeps its bytes. Throws `Failure`
    /// when `sss` is wanted and can't be: neither passwd nor group is there, or a reaction ends the search
    /// before it.
    [[nodiscard]] std::string textUsingSssd(bool wanted, NsswitchMemory& memory) const;
    [[nodiscard]] std::string textUsingSssd(bool wanted) const;

private:
    [[nodiscard]] std::optional<std::size_t> lineOf(std::string_view database) const;
    [[nodiscard]] bool isTerminated(std::size_t index) const;
    [[nodiscard]] std::string changed(std::size_t index, bool wanted, NsswitchMemory& memory) const;
    [[nodiscard]] std::string computed(std::size_t index, bool wanted) const;
    void requireReadable() const;
    void complete(std::vector<std::string>& lines, NsswitchMemory& memory, bool isAsItWas) const;
    void takeBack(std::vector<std::string>& lines, const NsswitchMemory& memory) const;

    std::string text_;
    std::string path_;
    std::vector<std::string> lines_; ///< with their line ends
};

} // namespace corvane::haldend
