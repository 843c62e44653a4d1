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
    /// policy's list is written as it is.
    bool stripsLocalNodesOnSave;
    /// Which rows can't be selected outside Custom mode: those of the shown list (false), or all (true).
    bool refusesAllRowsOutsideCustom;
    /// The delete button depends on where the selected row is; otherwise any selected row will do.
    bool deleteLooksAtRow;
    /// A row is dragged only if it is one of the list's behind the head; otherwise any row outside Automatic
    /// mode.
    bool dragLooksAtRow;
    /// Nothing can be dropped inside the head.
    bool refusesDropsInHead;
    /// Dropping a name whose old place lies beyond the list leaves the list as it is; otherwise it raises.
    bool toleratesOldPlaceBeyondEnd;
};

inline constexpr SearchPolicyTraits authenticationTraits = {
    .searchNode = halden::NodeType::authenticationSearchNode,
    .hasFixedHead = true,
    .stripsLocalNodesOnSave = true,
    .refusesAllRowsOutsideCustom = false,
    .deleteLooksAtRow = true,
    .dragLooksAtRow = true,
    .refusesDropsInHead = true,
    .toleratesOldPlaceBeyondEnd = true,
};
inline constexpr SearchPolicyTraits contactsTraits = {
    .searchNode = halden::NodeType::contactsSearchNode,
    .hasFixedHead = false,
    .stripsLocalNodesOnSave = false,
    .refusesAllRowsOutsideCustom = true,
    .deleteLooksAtRow = false,
    .dragLooksAtRow = false,
    .refusesDropsInHead = false,
    .toleratesOldPlaceBeyondEnd = false,
};

} // namespace corvane::searchpolicy
