#pragma once

#include "haldend/nodes/EngineNode.h"
#include "haldend/policy/MachinePolicy.h"

namespace corvane::haldend {

/// One search policy: what it says as the node's details, the calls that change it (111 automatic, 222 local,
/// 333 custom, 444 replace the custom list), and queries over the nodes of its active path.
///
/// The authentication and the contacts policy differ in two things: the authentication policy's custom path
/// begins with the local nodes, which its stored list leaves out; and it is applied to the machine's files.
class SearchNode final : public EngineNode {
public:
    enum class Purpose { authentication, contacts };
    SearchNode(std::shared_ptr<Engine> engine, Purpose purpose);

    /// Records of all nodes of the active path, in its order; of records of one type and name the first
    /// counts.
    [[nodiscard]] halden::RecordList fetch(const halden::QueryParameters& parameters,
                                           bool allowPartial) override;

protected:
    [[nodiscard]] AttributeMap details() override;
    [[nodiscard]] std::vector<std::string> subnodes() override { return activePath(); }
    /// The requests begin with the 32-byte external form; 444 goes on with a property list, an array of node
    /// names. The replies are empty.
    util::Bytes call(std::int32_t code, util::BytesView request) override;

private:
    [[nodiscard]] StoredSearchPolicy& policyIn(MachinePolicy& policy) const;
    [[nodiscard]] Machine::View view() const;
    [[nodiscard]] StoredSearchPolicy policyOf(const MachineSnapshot& snapshot) const;
    [[nodiscard]] std::vector<std::string> customPath(const StoredSearchPolicy& policy,
                                                      const std::vector<std::string>& automatic) const;
    /// What is stored first: a list that nobody stored yet as it is reported, without the local nodes where
    /// they aren't stored.
    [[nodiscard]] std::vector<std::string> firstCustomList(const StoredSearchPolicy& own) const;
    [[nodiscard]] std::vector<std::string> activePath() const;
    [[nodiscard]] std::vector<std::string> listFrom(util::BytesView bytes) const;
    void setMode(PolicyMode mode, util::BytesView request);
    void setCustomList(util::BytesView request);

    Purpose purpose_;
};

} // namespace corvane::haldend
