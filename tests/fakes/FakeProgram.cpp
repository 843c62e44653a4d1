#include "fakes/FakeProgram.h"

namespace corvane::fakes {

namespace attribute = halden::attribute;

FakeProgram::FakeProgram()
    : platform(journal), toolkit(journal), framework(journal),
      authorization(platform.authorizationService.make()),
      interface(journal, authorization), environment{platform.environment, toolkit, framework, interface,
                                                     formPresenter},
      delegate(environment, [this]() -> app::MainController& { return controller(); }),
      plugins_(std::make_unique<plugins::PluginController>(platform.environment)) {
    toolkit.fakeApplication().shouldTerminate = [this] { return delegate.applicationShouldTerminate(); };
    platform.log.lines.clear(); // a second program of the same test process is no accident
    auto& session = *framework.session;
    session.config().details.set(attribute::operatingSystemVersion, util::Array{"10.6.8"});
    addConnector("LDAP", "Active", "1.10");
    addConnector("BSD", "Active", "1.2.3");
    setPolicy(session.search(), attribute::automaticSearchPath,
              {"/Local/Accounts", "/BSD/Files", "/LDAP/one"});
    setPolicy(session.contacts(), attribute::automaticSearchPath, {"/LDAP/one"});
}

FakeRecord& FakeProgram::addConnector(const std::string& name, const std::string& state,
                                      const std::string& version) {
    auto record = std::make_shared<FakeRecord>(std::string(halden::recordType::plugins), name);
    if (!state.empty()) record->with(attribute::functionalState, {state});
    if (!version.empty()) record->with(attribute::version, {version});
    framework.session->config().records.push_back(record);
    return *record;
}

void FakeProgram::setPolicy(FakeNodeState& node, std::string_view activePath,
                            const std::vector<std::string>& custom) {
    auto automatic = localNodes;
    automatic.emplace_back("/LDAP/one");
    node.details.set(attribute::searchPolicy, util::Array{std::string(activePath)});
    node.details.set(attribute::automaticSearchPath, util::Array::ofTexts(automatic));
    node.details.set(attribute::localOnlySearchPath, util::Array::ofTexts(localNodes));
    node.details.set(attribute::customSearchPath, util::Array::ofTexts(custom));
}

} // namespace corvane::fakes
