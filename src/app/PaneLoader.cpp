#include "app/PaneLoader.h"

namespace corvane::app {

bool PaneLoader::isLoaded(Pane pane) const {
    switch (pane) {
    case Pane::services:
        return services_.isLoaded();
    case Pane::authenticationPolicy:
        return policies_.authenticationPolicy().isLoaded();
    case Pane::contactsPolicy:
        return policies_.contactsPolicy().isLoaded();
    case Pane::localUsers:
        break; // a page that no interface file has now
    }
    return false;
}

void PaneLoader::load(Pane pane) {
    switch (pane) {
    case Pane::services:
        services_.buildDSConfigPaneData();
        break;
    case Pane::authenticationPolicy:
        policies_.loadAuthenticationPane();
        break;
    case Pane::contactsPolicy:
        policies_.loadContactsPane();
        break;
    case Pane::localUsers:
        break;
    }
}

void PaneLoader::invalidate() {
    services_.invalidate();
    policies_.invalidate();
}

} // namespace corvane::app
