#include "contract/halden/FrameworkContract.h"
#include "contract/platform/DesktopContracts.h"
#include "contract/platform/PlatformContracts.h"
#include "fakes/FakePlatform.h"
#include "fakes/FakeService.h"

// The fakes under the contracts of the interfaces that they stand for: what a test sees of them is what it
// would see of the real thing.

using namespace corvane;
using namespace corvane::contract;
namespace attribute = halden::attribute;

namespace {

class FakedFramework final : public FrameworkUnderTest {
public:
    FakedFramework() {
        auto& session = *framework_.session;
        session.names = {"/Local/Accounts", "/BSD/Files", directoryNode(), "/Search", "/Contacts"};
        for (auto* node : {&session.search(), &session.contacts()})
            putPolicy(*node);
        int number = 0;
        for (const auto* name : {"AD", "BSD", "Contacts", "LDAP", "Local", "Search"})
            add(session.config(), halden::recordType::plugins, name)
                .with(attribute::functionalState, {"Active"})
                .with(attribute::version, {std::string(static_cast<std::size_t>(++number), '1')});
        add(session.local(), halden::recordType::users, "alice").with(attribute::realName, {"Alice"});
        add(session.local(), halden::recordType::users, "bob");
    }
    halden::Framework& framework() override { return framework_; }
    util::Bytes grantedForm() override { return util::Bytes(util::AuthorizationExternalForm::length, 7); }
    const platform::PropertyListCodec& codec() override { return codec_; }
    std::string directoryNode() override { return "/LDAP/one"; }

private:
    void putPolicy(fakes::FakeNodeState& state) {
        auto automatic = localNodes;
        automatic.push_back(directoryNode());
        state.details.set(attribute::searchPolicy, util::Array{std::string(attribute::localOnlySearchPath)});
        state.details.set(attribute::automaticSearchPath, util::Array::ofTexts(automatic));
        state.details.set(attribute::localOnlySearchPath, util::Array::ofTexts(localNodes));
        state.details.set(attribute::customSearchPath, util::Array::ofTexts(automatic));
    }
    static fakes::FakeRecord& add(fakes::FakeNodeState& state, std::string_view type, const char* name) {
        auto record = std::make_shared<fakes::FakeRecord>(std::string(type), name);
        state.records.push_back(record);
        return *record;
    }

    const std::vector<std::string> localNodes = {"/Local/Accounts", "/BSD/Files"};
    fakes::Journal journal_;
    fakes::FakePropertyListCodec codec_;
    fakes::FakeFramework framework_{journal_};
    fakes::FakeService service_{*framework_.session, codec_};
};

class FakedAuthorization final : public AuthorizationUnderTest {
public:
    platform::AuthorizationService& service() override { return service_; }

private:
    fakes::Journal journal_;
    fakes::FakeAuthorizationService service_{journal_};
};

class FakedStore final : public DynamicStoreUnderTest {
public:
    platform::DynamicStore& store() override { return store_; }
    void changeSearchPolicy() override {
        store_.change("com.velmora.DirectoryService.NotifyTypeStandard:SearchPolicyChanged");
    }
    void runLoop() override { store_.runLoop(); }

private:
    fakes::FakeDynamicStore store_;
};

class FakedDefaults final : public UserDefaultsUnderTest {
public:
    platform::UserDefaults& defaults() override { return *defaults_; }
    void restart() override {
        auto stored = std::make_unique<fakes::FakeUserDefaults>();
        stored->values = defaults_->values;
        defaults_ = std::move(stored);
    }

private:
    std::unique_ptr<fakes::FakeUserDefaults> defaults_ = std::make_unique<fakes::FakeUserDefaults>();
};

class FakedRunLoop final : public RunLoopUnderTest {
public:
    platform::RunLoop& runLoop() override { return runLoop_; }
    void letOneIntervalPass() override {
        runLoop_.runPosted();
        runLoop_.fireAll();
    }

private:
    fakes::FakeRunLoop runLoop_;
};

class FakedWorkspace final : public WorkspaceUnderTest {
public:
    FakedWorkspace() { workspace_.files = {file(), program()}; }
    platform::Workspace& workspace() override { return workspace_; }
    std::string file() override { return "/etc/connector.conf"; }
    std::string program() override { return "/usr/bin/configurator"; }
    std::string missing() override { return "/usr/bin/missing"; }
    std::vector<std::vector<std::string>> started() override { return workspace_.started; }

private:
    fakes::FakeWorkspace workspace_;
};

class FakedStrings final : public LocalizedStringsUnderTest {
public:
    platform::LocalizedStrings& strings() override { return strings_; }

private:
    fakes::FakeStrings strings_;
};

class FakedBundles final : public BundleLoaderUnderTest {
public:
    FakedBundles() {
        loader_.add(folder(), "Good.cvplug", &loader_);
        loader_.add(folder(), "Broken.cvplug", nullptr);
        loader_.folders[folder()].emplace_back("notes.txt");
    }
    platform::BundleLoader& loader() override { return loader_; }
    std::string folder() override { return "/folder/"; }
    const std::vector<std::string>& logged() override { return loader_.logged; }

private:
    fakes::FakeBundleLoader loader_;
};

/// The one case of a suite: `Case` made of a new `World`.
template <typename Case, typename World>
auto fake() {
    return testing::Values(Case{"Fake", [] { return std::make_unique<World>(); }});
}

} // namespace

namespace corvane::contract {

INSTANTIATE_TEST_SUITE_P(Fake, FrameworkContract, (fake<FrameworkCase, FakedFramework>()), caseName);
INSTANTIATE_TEST_SUITE_P(Fake, AuthorizationContract, (fake<AuthorizationCase, FakedAuthorization>()),
                         nameOfCase);
INSTANTIATE_TEST_SUITE_P(Fake, DynamicStoreContract, (fake<DynamicStoreCase, FakedStore>()), nameOfCase);
INSTANTIATE_TEST_SUITE_P(Fake, PropertyListContract, (fake<PropertyListCase, fakes::FakePropertyListCodec>()),
                         nameOfCase);
INSTANTIATE_TEST_SUITE_P(Fake, UserDefaultsContract, (fake<UserDefaultsCase, FakedDefaults>()), nameOfCase);
INSTANTIATE_TEST_SUITE_P(Fake, RunLoopContract, (fake<RunLoopCase, FakedRunLoop>()), nameOfCase);
INSTANTIATE_TEST_SUITE_P(Fake, WorkspaceContract, (fake<WorkspaceCase, FakedWorkspace>()), nameOfCase);
INSTANTIATE_TEST_SUITE_P(Fake, LocalizedStringsContract, (fake<LocalizedStringsCase, FakedStrings>()),
                         nameOfCase);
INSTANTIATE_TEST_SUITE_P(Fake, BundleLoaderContract, (fake<BundleLoaderCase, FakedBundles>()), nameOfCase);

} // namespace corvane::contract
