#pragma once

#include "searchpolicy/SearchPolicies.h"
#include "services/ServicesList.h"

namespace corvane::app {

/// The panes whose data is read when they are first shown.
enum class Pane { services, authenticationPolicy, contactsPolicy, localUsers };

/// Reads the panes' data. Main thread.
class PaneLoader {
public:
    PaneLoader(services::ServicesList& services, searchpolicy::SearchPolicies& policies)
        : services_(services), policies_(policies) {}

    [[nodiscard]] bool isLoaded(Pane pane) const;
    /// Reads the pane's data and shows it.
    void load(Pane pane);
    /// Every pane is read again when it is next shown.
    void invalidate();

private:
    services::ServicesList& services_;
    searchpolicy::SearchPolicies& policies_;
};

} // namespace corvane::app
