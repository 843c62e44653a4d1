#pragma once

#include <cstdint>

#include "halden/Names.h"

namespace corvane::searchpolicy {

/// How a policy chooses its nodes. The pop-up's item index is the mode minus one.
enum class Mode : std::int32_t { notYetKnown = 0, automatic = 1, local = 2, custom = 3 };

/// Every deliberate difference between the two policies, in one place.
struct SearchPolicyTraits {
    /// The search node that holds the policy.
    halden::NodeType searchNode;

    /// The custom list begins with the local nodes: as many entries as the local-only list has. They are
    /// shown gray, can't be selected, deleted, dragged or dropped before.
    bool hasFixedHead;
    /// The local-only list's entries are taken out of the custom list before it is written. The other
    /// policy's list is written as it stands.
    bool stripsLocalNodesOnSave;
    /// Which rows can't be selected outside Custom mode: those of the shown list (false), or all (true).
    bool refusesAllRowsOutsideCustom;
    /// The delete button looks at where the selected row lies; otherwise any selected row will do.
    bool deleteLooksAtRow;
};

inline constexpr SearchPolicyTraits authenticationTraits = {halden::NodeType::authenticationSearchNode, true,
                                                            true, false, true};
inline constexpr SearchPolicyTraits contactsTraits = {halden::NodeType::contactsSearchNode, false, false,
                                                      true, false};

} // namespace corvane::searchpolicy
