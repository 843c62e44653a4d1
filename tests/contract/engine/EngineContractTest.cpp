#include "contract/halden/FrameworkContract.h"
#include "contract/platform/PlatformContracts.h"
#include "haldend/EmbeddedDynamicStore.h"
#include "haldend/TestMachine.h"

// The engine and the property-list codec under the contracts of the interfaces that they implement.

using namespace corvane;
using namespace corvane::contract;
using namespace corvane::haldend::test;

namespace {

class EngineFramework final : public FrameworkUnderTest {
public:
    halden::Framework& framework() override { return *machine_.framework; }
    util::Bytes grantedForm() override { return machine_.form(); }
    const platform::PropertyListCodec& codec() override { return machine_.codec; }
    std::string directoryNode() override { return staffNode; }

private:
    TestMachine machine_;
};

class EngineAuthorization final : public AuthorizationUnderTest {
public:
    platform::AuthorizationService& service() override { return *machine_.service; }

private:
    TestMachine machine_;
};

class EngineStore final : public DynamicStoreUnderTest {
public:
    EngineStore() : store_(machine_.engine, [this](std::function<void()> action) { posted_.push_back(std::move(action)); }) {}
    platform::DynamicStore& store() override { return store_; }
    void changeSearchPolicy() override { EXPECT_EQ(machine_.call(machine_.search(), 111).code, 0); }
    void runLoop() override {
        const auto actions = std::exchange(posted_, {});
        for (const auto& action : actions) action();
    }

private:
    TestMachine machine_;
    std::vector<std::function<void()>> posted_;
    haldend::EmbeddedDynamicStore store_;
};

} // namespace

namespace corvane::contract {

INSTANTIATE_TEST_SUITE_P(Engine, FrameworkContract,
                         testing::Values(FrameworkCase{"Engine", [] { return std::make_unique<EngineFramework>(); }}), caseName);
INSTANTIATE_TEST_SUITE_P(Engine, AuthorizationContract,
                         testing::Values(AuthorizationCase{"Engine", [] { return std::make_unique<EngineAuthorization>(); }}),
                         nameOfCase);
INSTANTIATE_TEST_SUITE_P(Engine, DynamicStoreContract,
                         testing::Values(DynamicStoreCase{"Engine", [] { return std::make_unique<EngineStore>(); }}), nameOfCase);
INSTANTIATE_TEST_SUITE_P(Codec, PropertyListContract,
                         testing::Values(PropertyListCase{"Codec", [] { return std::make_unique<plist::PropertyListCodec>(); }}),
                         nameOfCase);

} // namespace corvane::contract
