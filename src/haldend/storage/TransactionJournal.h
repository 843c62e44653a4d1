#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "haldend/storage/MachineFolder.h"

namespace corvane::haldend {

/// What a transaction is about to rename, as written to disk before the first rename.
struct TransactionJournal {
    struct Entry {
        std::string file;   ///< which one, relative to the machine's root, as in "etc/nsswitch.conf"
        Fingerprint before; ///< of the file when the transaction began
        Fingerprint after;  ///< of the new content
        friend bool operator==(const Entry&, const Entry&) = default;
    };
    std::vector<Entry> entries;

    [[nodiscard]] std::string text() const;
    /// None when the text isn't a whole journal.
    [[nodiscard]] static std::optional<TransactionJournal> fromText(std::string_view text);
};

} // namespace corvane::haldend
